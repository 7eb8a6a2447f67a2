# Picking without OpenGL, and compared with picks in selection mode where there is a context without a display.
kvo_add_test(scene_pick_test
  SOURCES pick_index_test.cpp pick_polygon_test.cpp pick_through_test.cpp pick_models.cpp
  LIBRARIES kvo_scene_support)
if(TARGET kvohost)
  kvo_add_test(scene_pick_contract_test PIECES 2
    SOURCES pick_contract_test.cpp pick_fixture.cpp pick_models.cpp
    LIBRARIES kvo_scene_support kvohost)
endif()
