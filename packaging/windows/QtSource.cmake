# The source package that Qt for Windows was built from, which the installed licences offer. build-qt
# records it in the tree; for a tree without the record, RALLYVANE_QT_SOURCE names it, a setting or an
# environment variable. Sets QT_SOURCE and QT_SOURCE_COMMAND.

set(RALLYVANE_QT_SOURCE "$ENV{RALLYVANE_QT_SOURCE}" CACHE STRING
    "Source package of a Qt that has no record of it, for example \"qt6-base 6.4.2+dfsg-10\"")
set(record ${QT6_INSTALL_PREFIX}/licenses/source-package)
set(package "${RALLYVANE_QT_SOURCE}")
if(EXISTS ${record})
    file(STRINGS ${record} package LIMIT_COUNT 1)
endif()

if(package MATCHES "^([a-z0-9.+-]+) ([0-9][A-Za-z0-9.+~-]*)$")
    set(name ${CMAKE_MATCH_1})
    set(version ${CMAKE_MATCH_2})
    if(NOT version MATCHES "^([0-9]+:)?${Qt6_VERSION}[^0-9.]")
        message(FATAL_ERROR "\"${package}\" is not the source of Qt ${Qt6_VERSION}")
    endif()
    set(QT_SOURCE "the Debian source package ${name}, version ${version}")
    set(QT_SOURCE_COMMAND "apt-get source ${name}=${version}")
elseif(package STREQUAL "")
    message(WARNING "This Qt has no record of its source package, so the licences offer that of "
        "version ${Qt6_VERSION} without its revision. Set RALLYVANE_QT_SOURCE before publishing.")
    set(QT_SOURCE "a Debian source package qt6-base of version ${Qt6_VERSION}")
    set(QT_SOURCE_COMMAND "apt-get source qt6-base")
else()
    message(FATAL_ERROR "\"${package}\" is not a source package with its version")
endif()
