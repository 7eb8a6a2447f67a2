find_package(EXPAT REQUIRED)
find_package(ZLIB REQUIRED)
target_link_libraries(kvoimport PRIVATE EXPAT::EXPAT ZLIB::ZLIB)
kvo_deck_format(VTK
  vtk_cells.cpp
  vtk_legacy.cpp
  vtk_mesh.cpp
  vtu_arrays.cpp
  vtu_reader.cpp)
