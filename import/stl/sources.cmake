kvo_deck_format(STL
  stl_reader.cpp)
