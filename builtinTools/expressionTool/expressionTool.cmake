# The expression language of the expression package: scanner and parser
# generated at build time into the build directory, compiled into the tool
# library. Included from builtinTools/CMakeLists.txt.
find_package(BISON 3.8 REQUIRED)
find_package(FLEX REQUIRED)

set(_exp_src ${CMAKE_CURRENT_LIST_DIR}/src)
set(_exp_gen ${CMAKE_CURRENT_BINARY_DIR}/expressionTool)
file(MAKE_DIRECTORY ${_exp_gen})
bison_target(BtExpGrammar ${_exp_src}/btExpGrammar.yy ${_exp_gen}/btExpGrammar.cpp
             DEFINES_FILE ${_exp_gen}/btExpGrammar.h)
flex_target(BtExpScanner ${_exp_src}/btExpScanner.ll ${_exp_gen}/btExpScanner.cpp
            DEFINES_FILE ${_exp_gen}/btExpScanner.h)
add_flex_bison_dependency(BtExpScanner BtExpGrammar)
set(_exp_generated ${BISON_BtExpGrammar_OUTPUTS} ${FLEX_BtExpScanner_OUTPUTS})
# Generated code is not ours to keep warning-free.
set_source_files_properties(${_exp_generated} PROPERTIES COMPILE_OPTIONS "-w")
target_sources(QVbuiltinTools PRIVATE ${_exp_generated})
target_include_directories(QVbuiltinTools PUBLIC ${_exp_gen})
