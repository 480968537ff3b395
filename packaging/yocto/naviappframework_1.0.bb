# A recipe to start from: NFW_REPOSITORY and SRCREV are the layer's to give.
SUMMARY = "The common frame of in-vehicle navigation applications"
SECTION = "libs"
# No licence has been chosen: CLOSED keeps the image's builder from handing the sources on.
LICENSE = "CLOSED"

SRC_URI = "git://${NFW_REPOSITORY};branch=main;protocol=ssh"
S = "${WORKDIR}/git"

inherit cmake pkgconfig

# The stand-ins are for the desk. A unit's layer has a folder whose CMakeLists.txt defines the target NfwPlatform, and
# depends on the recipes of the libraries that stand behind it: docs/porting.md.
#   SRC_URI += "file://unit-platform/CMakeLists.txt"
#   EXTRA_OECMAKE += "-DNFW_PLATFORM_DIR=${WORKDIR}/unit-platform"
#   DEPENDS += "unit-sdk"
EXTRA_OECMAKE = "-DNFW_BUILD_TESTS=OFF"

# The tools need header-only libraries, and SQLite for one format; without them, or on the unit's own platform, the
# libraries alone are built.
PACKAGECONFIG ??= ""
# nfw-log embeds two scripts of Debian's packages libjs-dygraphs and libjs-leaflet: NFW_DYGRAPHS_SCRIPT and its like in
# EXTRA_OECMAKE name the files (tools/nfw-log/plotting/page/Page.cmake).
PACKAGECONFIG[tools] = "-DNFW_BUILD_TOOLS=ON,-DNFW_BUILD_TOOLS=OFF,cli11 fmt nlohmann-json sqlite3"

PACKAGES =+ "${@bb.utils.contains('PACKAGECONFIG', 'tools', '${PN}-tools', '', d)}"
FILES:${PN}-tools = "${bindir} ${datadir}/bash-completion"
FILES:${PN}-doc += "${datadir}/doc"
