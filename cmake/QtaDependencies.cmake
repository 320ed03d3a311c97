# The third-party libraries a module may name in qta_add_module(... PUBLIC_LIBRARIES
# or PRIVATE_LIBRARIES ...). A library is looked for only when a module names
# it, and becomes the target qta_lib_<name>. Each entry also says how a
# consumer of the installed package finds it again, so qtaConfig.cmake and
# qta.pc follow from the modules' declarations.
#
#   qta_library(NAME PKG_CONFIG module)               found through pkg-config
#   qta_library(NAME PACKAGE package TARGET target    found with find_package;
#               [VERSION version])                    not in qta.pc (header-only)
find_package(PkgConfig REQUIRED)

function(qta_library name)
  cmake_parse_arguments(LIB "" "PKG_CONFIG;PACKAGE;TARGET;VERSION" "" ${ARGN})
  set_property(GLOBAL PROPERTY QTA_LIBRARY_${name}_PKG_CONFIG "${LIB_PKG_CONFIG}")
  set_property(GLOBAL PROPERTY QTA_LIBRARY_${name}_PACKAGE "${LIB_PACKAGE}")
  set_property(GLOBAL PROPERTY QTA_LIBRARY_${name}_TARGET "${LIB_TARGET}")
  set_property(GLOBAL PROPERTY QTA_LIBRARY_${name}_VERSION "${LIB_VERSION}")
  set_property(GLOBAL APPEND PROPERTY QTA_KNOWN_LIBRARIES ${name})
endfunction()

qta_library(idn PKG_CONFIG libidn)
qta_library(log4cxx PKG_CONFIG liblog4cxx)
qta_library(apr PKG_CONFIG apr-1)
qta_library(aprutil PKG_CONFIG apr-util-1)
qta_library(crypto PKG_CONFIG libcrypto)
qta_library(boost PACKAGE Boost VERSION 1.81 TARGET Boost::headers)

# The CMake lines that make the target qta_lib_<name> available. In the build
# (`for` BUILD) a missing library stops the configuration and the target is
# seen by every folder; in a consumer's qtaConfig.cmake (`for` CONSUMER) a
# missing library makes find_package(qta) report qta as not found.
function(qta_library_find_code name for out)
  get_property(known GLOBAL PROPERTY QTA_KNOWN_LIBRARIES)
  if(NOT name IN_LIST known)
    message(FATAL_ERROR "unknown third-party library '${name}' (known: ${known}); "
                        "add it to cmake/QtaDependencies.cmake")
  endif()
  get_property(pc GLOBAL PROPERTY QTA_LIBRARY_${name}_PKG_CONFIG)
  get_property(package GLOBAL PROPERTY QTA_LIBRARY_${name}_PACKAGE)
  get_property(target GLOBAL PROPERTY QTA_LIBRARY_${name}_TARGET)
  get_property(version GLOBAL PROPERTY QTA_LIBRARY_${name}_VERSION)
  if(for STREQUAL "BUILD")
    set(scope " GLOBAL")
    set(find_package find_package)
    set(required REQUIRED)
  else()
    set(scope "")
    set(find_package find_dependency)
    set(required QUIET)
  endif()

  set(code "if(NOT TARGET qta_lib_${name})\n")
  if(pc)
    string(APPEND code "  pkg_check_modules(qta_${name} ${required} IMPORTED_TARGET${scope} ${pc})\n")
    if(for STREQUAL "CONSUMER")
      string(APPEND code "  if(NOT qta_${name}_FOUND)\n"
                         "    set(qta_FOUND FALSE)\n"
                         "    set(qta_NOT_FOUND_MESSAGE \"pkg-config cannot find ${pc}\")\n"
                         "    return()\n"
                         "  endif()\n")
    endif()
    set(target PkgConfig::qta_${name})
  else()
    string(APPEND code "  ${find_package}(${package} ${version} ${required})\n")
    if(for STREQUAL "BUILD")
      string(APPEND code "  set_property(TARGET ${target} PROPERTY IMPORTED_GLOBAL TRUE)\n")
    endif()
  endif()
  string(APPEND code "  add_library(qta_lib_${name} INTERFACE IMPORTED${scope})\n"
                     "  target_link_libraries(qta_lib_${name} INTERFACE ${target})\n"
                     "endif()\n")
  set(${out} "${code}" PARENT_SCOPE)
endfunction()

# Finds the library once, for the whole build, and records how a consumer
# finds it again.
function(qta_require_library name)
  if(TARGET qta_lib_${name})
    return()
  endif()
  qta_library_find_code(${name} BUILD build_code)
  cmake_language(EVAL CODE "${build_code}")
  qta_library_find_code(${name} CONSUMER consumer_code)
  set_property(GLOBAL APPEND_STRING PROPERTY QTA_CONSUMER_FIND_CODE "${consumer_code}")
endfunction()
