# The Debian package that `make package` builds from the installed tree: the program, the
# command line, the raster plugin, the run-time files, the desktop files and the manual pages,
# under /usr. Its library dependencies are read from the binaries by dpkg-shlibdeps.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME nerivane)
set(CPACK_PACKAGE_VENDOR Kestrune)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "designer of active op-amp filters")
set(CPACK_PACKAGE_DESCRIPTION
    "Nerivane designs active analog filters built from op amps (VCVS and multiple feedback;
low pass, high pass, band pass and notch) for the common response families, computes every
resistor and capacitor, and simulates the circuit as built: with a real op amp, standard
values or toleranced parts. It plots magnitude, phase, group delay and the pulse response.
.
The package holds the desktop program (nerivane) and the command line (nerivane-cli),
which runs the same design without a display and writes JSON, CSV, SPICE and pictures.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Kestrune <nerivane@kestrune.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${NERIVANE_PROJECT_URL}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
