kvo_deck_format(PLY ply_reader.cpp)
