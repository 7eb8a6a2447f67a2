# What a scene can look like: sections, lines, colours, text; with golden pictures in golden/.
if(TARGET kvohost)
  kvo_add_test(scene_look_test PIECES 2 SOURCES coloring_test.cpp far_model_test.cpp labels_test.cpp look_pictures.cpp look_pictures_test.cpp overlay_painter_test.cpp section_test.cpp surface_lines_test.cpp transparency_test.cpp
               LIBRARIES kvo_scene_support kvohost)
  target_include_directories(scene_look_test PRIVATE ${PROJECT_SOURCE_DIR}/tests/host)
  target_compile_definitions(scene_look_test PRIVATE KVO_SCENE_GOLDEN_DIR="${CMAKE_CURRENT_SOURCE_DIR}/golden"
    KVO_SCENE_DIFFERENCE_DIR="${CMAKE_CURRENT_BINARY_DIR}/differences")

  # Draws the pictures of docs/scene.md; nothing builds or runs it by itself.
  add_executable(kvo_scene_pictures EXCLUDE_FROM_ALL scene_pictures.cpp)
  kvo_configure_target(kvo_scene_pictures)
  target_link_libraries(kvo_scene_pictures PRIVATE kvoscene kvohost)
endif()
