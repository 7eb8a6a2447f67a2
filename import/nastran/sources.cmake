kvo_deck_format(NASTRAN
  bdf_card.cpp
  bdf_coords.cpp
  bdf_element_table.cpp
  bdf_elements.cpp
  bdf_lines.cpp
  bdf_properties.cpp
  bdf_reader.cpp)
