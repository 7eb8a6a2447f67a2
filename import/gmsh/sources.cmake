kvo_deck_format(GMSH msh_elements.cpp msh_groups.cpp msh_input.cpp msh_reader.cpp msh_types.cpp)
