kvo_deck_format(ANSYS
  cdb_attribute_commands.cpp
  cdb_attributes.cpp
  cdb_deck.cpp
  cdb_elements.cpp
  cdb_lines.cpp
  cdb_parameters.cpp
  cdb_reader.cpp)
