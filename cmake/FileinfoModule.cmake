# One static library per subsystem directory: every .cpp below the directory
# (tests live in tests/, not here). New files are picked up at build time.
function(fileinfo_module name)
  cmake_parse_arguments(M "" "" "DEPS" ${ARGN})
  # Modules all go whole into libfileinfo.so, so one module needs no link
  # item for another (it would enter the shared library twice); only the
  # outside libraries are linked.
  list(FILTER M_DEPS EXCLUDE REGEX "^fi_")
  file(GLOB_RECURSE srcs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(srcs)
    add_library(fi_${name} STATIC ${srcs})
    target_link_libraries(fi_${name} PUBLIC fi_common ${M_DEPS})
    set_property(GLOBAL APPEND PROPERTY FILEINFO_STATIC_MODULES fi_${name})
  else()
    add_library(fi_${name} INTERFACE)
    target_link_libraries(fi_${name} INTERFACE fi_common ${M_DEPS})
  endif()
endfunction()

# libfileinfo.so: all subsystem libraries, whole.
function(fileinfo_shared_library)
  get_property(mods GLOBAL PROPERTY FILEINFO_STATIC_MODULES)
  add_library(fileinfo SHARED ${PROJECT_SOURCE_DIR}/cmake/empty.cpp)
  set_target_properties(fileinfo PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 0)
  # Calls inside the library go straight to its own functions: no symbol
  # lookup at load for each of its vtable entries and calls (some two
  # thousand), which a tool started once per small job pays every time.
  target_link_options(fileinfo PRIVATE -Wl,-Bsymbolic-functions)
  target_link_libraries(fileinfo PUBLIC $<BUILD_INTERFACE:fi_common>)
  target_include_directories(fileinfo PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/fileinfo>)
  if(mods)
    target_link_libraries(fileinfo PRIVATE "$<LINK_LIBRARY:WHOLE_ARCHIVE,${mods}>")
    foreach(m ${mods})
      get_target_property(deps ${m} LINK_LIBRARIES)
      foreach(d ${deps})
        if(NOT d MATCHES "^fi_")
          target_link_libraries(fileinfo PRIVATE ${d})
        endif()
      endforeach()
    endforeach()
  endif()
endfunction()

# A test program per folder below tests/, linked against the shared library.
function(fileinfo_test_dir dir)
  get_filename_component(name ${dir} NAME)
  file(GLOB_RECURSE srcs CONFIGURE_DEPENDS ${dir}/*.cpp)
  if(NOT srcs)
    return()
  endif()
  add_executable(test_${name} ${srcs})
  target_link_libraries(test_${name} PRIVATE fileinfo fi_testsupport GTest::gtest GTest::gmock GTest::gtest_main)
  gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR} PROPERTIES LABELS ${name})
endfunction()
