# Everything that a packager may set at configure time.
set(CELLARIX_PREFIX "/opt/apps/cellarix" CACHE PATH "Directory that the whole program is installed into")
set(CELLARIX_BUILD_TYPE "Release" CACHE STRING "Any other word reads data from development paths and logs debug messages")
option(CELLARIX_TESTS "Build the tests" ON)
option(CELLARIX_BENCH "Build the benchmarks" OFF)
option(CELLARIX_WERROR "Treat warnings as errors" OFF)
option(CELLARIX_FUZZ "Build the fuzz targets with libFuzzer; needs clang" OFF)
set(CELLARIX_SANITIZE "" CACHE STRING "Value for -fsanitize, empty for none")

set(CELLARIX_AGREEMENT_URL "http://localhost/cellarix/agreement/%1.html" CACHE STRING
    "Service agreement page; %1 becomes cn or en")
set(CELLARIX_STORE_URL "" CACHE STRING "The store, without a slash at its end; empty for the store server on each machine")
set(CELLARIX_DRIVER_HELP_URL "http://localhost/cellarix/help/%1/drivers.html" CACHE STRING
    "How to install drivers of graphics cards; %1 becomes cn or en")
set(CELLARIX_FORUM_URL "http://localhost/cellarix/forum/" CACHE STRING "Where users talk to each other")
# Both services are signed; without an address or a secret the program sends them nothing.
set(CELLARIX_REPORT_URL "" CACHE STRING "The report service, without a slash at its end")
set(CELLARIX_REPORT_SECRET "" CACHE STRING "Its secret, as hexadecimal digits")
set(CELLARIX_MODERATION_URL "" CACHE STRING "Text moderation, such as the address of Aliyun's in cn-shenzhen")
set(CELLARIX_MODERATION_KEY_ID "" CACHE STRING "Its key id, as hexadecimal digits")
set(CELLARIX_MODERATION_KEY_SECRET "" CACHE STRING "Its key's secret, as hexadecimal digits")

set(CELLARIX_BIN_DIR ${CELLARIX_PREFIX}/files/bin)
set(CELLARIX_SHARE_DIR ${CELLARIX_PREFIX}/files/share/cellarix)
# The catalogue of components; development builds read it from source/.
set(CELLARIX_CATALOGUE_DIR ${CELLARIX_SHARE_DIR})
if(NOT CELLARIX_BUILD_TYPE STREQUAL "Release")
  set(CELLARIX_CATALOGUE_DIR ${CELLARIX_SHARE_DIR}/source)
endif()
set(CELLARIX_XDG_DIR ${CELLARIX_PREFIX}/files/share)
