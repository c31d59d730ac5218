# The sequence path grammar of the image import package: scanner and parser
# generated at build time into the build directory, compiled into the tool
# library. Included from builtinTools/CMakeLists.txt.
find_package(BISON 3.8 REQUIRED)
find_package(FLEX REQUIRED)

set(_seqpath_src ${CMAKE_CURRENT_LIST_DIR}/src)
set(_seqpath_gen ${CMAKE_CURRENT_BINARY_DIR}/imageImportTool)
file(MAKE_DIRECTORY ${_seqpath_gen})
bison_target(BtSequencePathGrammar ${_seqpath_src}/btSequencePathGrammar.yy
             ${_seqpath_gen}/btSequencePathGrammar.cpp DEFINES_FILE ${_seqpath_gen}/btSequencePathGrammar.h)
flex_target(BtSequencePathScanner ${_seqpath_src}/btSequencePathScanner.ll
            ${_seqpath_gen}/btSequencePathScanner.cpp DEFINES_FILE ${_seqpath_gen}/btSequencePathScanner.h)
add_flex_bison_dependency(BtSequencePathScanner BtSequencePathGrammar)
set(_seqpath_generated ${BISON_BtSequencePathGrammar_OUTPUTS} ${FLEX_BtSequencePathScanner_OUTPUTS})
# Generated code is not ours to keep warning-free.
set_source_files_properties(${_seqpath_generated} PROPERTIES COMPILE_OPTIONS "-w")
target_sources(QVbuiltinTools PRIVATE ${_seqpath_generated})
target_include_directories(QVbuiltinTools PUBLIC ${_seqpath_gen})
# The image sequence tests write a small movie with the FFmpeg libraries when
# the build has them; without them those tests are skipped.
pkg_check_modules(QV_TEST_FFMPEG QUIET IMPORTED_TARGET libavformat libavcodec libavutil)
if(QV_TEST_FFMPEG_FOUND AND TARGET QVbuiltinToolsTest)
  target_link_libraries(QVbuiltinToolsTest PRIVATE PkgConfig::QV_TEST_FFMPEG)
  target_compile_definitions(QVbuiltinToolsTest PRIVATE QV_TEST_HAS_FFMPEG)
endif()
