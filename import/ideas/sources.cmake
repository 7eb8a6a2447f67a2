kvo_deck_format(IDEAS
  unv_elements.cpp
  unv_reader.cpp)
