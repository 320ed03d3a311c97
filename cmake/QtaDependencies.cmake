# Third-party libraries the modules link. Each is found once here and handed to
# the modules that use it through qta_add_module(... LIBRARIES ...).
find_package(PkgConfig REQUIRED)
pkg_check_modules(IDN REQUIRED IMPORTED_TARGET libidn)
