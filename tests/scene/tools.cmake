# Quality, measures and selecting more.
kvo_add_test(scene_tools_test
  SOURCES mark_set_test.cpp measure_test.cpp quality_test.cpp select_box_test.cpp select_connected_test.cpp
          select_faces_test.cpp selector_test.cpp toolstest.cpp
  LIBRARIES kvo_scene_support)
