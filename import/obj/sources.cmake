kvo_deck_format(OBJ obj_reader.cpp)
