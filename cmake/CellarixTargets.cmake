include(GNUInstallDirs)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Flags of our own code, in one place.
add_library(cellarix_flags INTERFACE)
# GCC 12 sees overreads in Qt's inline string comparisons that are not there.
target_compile_options(cellarix_flags INTERFACE
  -Wall -Wextra -Wshadow $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overread> $<$<BOOL:${CELLARIX_WERROR}>:-Werror>)
target_compile_definitions(cellarix_flags INTERFACE
  QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS QT_MESSAGELOGCONTEXT
  QT_DEPRECATED_WARNINGS QT_DISABLE_DEPRECATED_BEFORE=0x050F00)
target_include_directories(cellarix_flags INTERFACE
  ${PROJECT_SOURCE_DIR}/src/frontend ${PROJECT_SOURCE_DIR}/src/platform)
if(CELLARIX_SANITIZE)
  target_compile_options(cellarix_flags INTERFACE -fsanitize=${CELLARIX_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(cellarix_flags INTERFACE -fsanitize=${CELLARIX_SANITIZE})
endif()
if(CELLARIX_FUZZ)
  target_compile_options(cellarix_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
# A compiler cache is used where there is one. It wants to be told that precompiled headers are safe to compare.
find_program(CELLARIX_CCACHE ccache)
if(CELLARIX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
    env CCACHE_SLOPPINESS=pch_defines,time_macros ${CELLARIX_CCACHE})
  target_compile_options(cellarix_flags INTERFACE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()
find_program(CELLARIX_LLD ld.lld)
if(CELLARIX_LLD)
  target_link_options(cellarix_flags INTERFACE -fuse-ld=lld)
endif()

# cellarix_precompile(NAME HEADER LIBS ...): the precompiled header of a target, made once for all that ask for it with
# the same libraries. GCC takes none in which another macro matters, such as those that tell Qt's modules.
function(cellarix_precompile name header)
  set(libs ${ARGN})
  string(MAKE_C_IDENTIFIER "cellarix_header_${header}_${libs}" owner)
  if(NOT TARGET ${owner})
    set(source ${PROJECT_BINARY_DIR}/${owner}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "")
    add_library(${owner} OBJECT ${source})
    target_link_libraries(${owner} PRIVATE cellarix_flags ${libs})
    target_precompile_headers(${owner} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/pch/${header}.h)
    set_target_properties(${owner} PROPERTIES AUTOMOC OFF AUTORCC OFF)
  endif()
  target_precompile_headers(${name} REUSE_FROM ${owner})
endfunction()

# cellarix_library(NAME [WIDGETS] SOURCES ... LIBS ...): one room of the house as a static library.
function(cellarix_library name)
  cmake_parse_arguments(ARG "WIDGETS" "" "SOURCES;LIBS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC cellarix_flags ${ARG_LIBS})
  if(ARG_WIDGETS)
    cellarix_precompile(${name} widgets Qt5::Widgets)
  else()
    cellarix_precompile(${name} core Qt5::Core)
  endif()
endfunction()

# Sets those of the Qt modules that matter to QTest's headers which a target links, itself or through others.
function(cellarix_qt_modules result)
  set(todo ${ARGN})
  set(seen "")
  set(found "")
  while(todo)
    list(POP_FRONT todo lib)
    string(REGEX REPLACE "^\\$<LINK_ONLY:(.*)>$" "\\1" lib "${lib}")
    if(NOT TARGET ${lib} OR lib IN_LIST seen)
      continue()
    endif()
    list(APPEND seen ${lib})
    if(lib MATCHES "^Qt5::(Gui|Network|Widgets)$")
      list(APPEND found ${lib})
    endif()
    get_target_property(next ${lib} INTERFACE_LINK_LIBRARIES)
    if(next)
      list(APPEND todo ${next})
    endif()
  endwhile()
  list(SORT found)
  set(${result} "${found}" PARENT_SCOPE)
endfunction()

# cellarix_test(NAME SOURCES ... LIBS ... [LABELS ...] [TIMEOUT s] [SESSION] [ENV ...]): one QtTest program.
# SESSION runs it inside scripts/session: a real X server and window manager, the installed tree in front.
function(cellarix_test name)
  cmake_parse_arguments(ARG "SESSION" "TIMEOUT" "SOURCES;LIBS;LABELS;ENV" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE cellarix_flags Qt5::Test ${ARG_LIBS})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  cellarix_qt_modules(modules ${ARG_LIBS})
  cellarix_precompile(${name} test Qt5::Test ${modules})
  target_compile_definitions(${name} PRIVATE
    TEST_SOURCE_DIR="${PROJECT_SOURCE_DIR}" TEST_BINARY_DIR="${PROJECT_BINARY_DIR}")
  if(ARG_SESSION)
    add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/scripts/session --private $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "CELLARIX_BUILD=${PROJECT_BINARY_DIR};${ARG_ENV}")
  else()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${ARG_ENV}")
  endif()
  if(CELLARIX_SANITIZE)
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
      "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0"
      "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/tsan.supp"
      "UBSAN_OPTIONS=print_stacktrace=1")
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}" SKIP_RETURN_CODE 77)
endfunction()
