# The Debian package (`make deb`): what `make install` puts under /usr, with the dependencies that
# dpkg-shlibdeps reads off the command's shared libraries.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmor-thumbnailer)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "thumbnails and proofs of Velmor font source documents")
set(CPACK_PACKAGE_DESCRIPTION
    "Draws the thumbnails that file browsers show for font source documents in the Velmor format: two sample glyphs of the font, and a tint per master for fonts of several masters. velmor-proof draws sample sheets, texts, masters, instances and glyph overviews as PNG, SVG or PDF.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Velmor Thumbnailer developers <velmor-thumbnailer@localhost>")
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_STRIP_FILES ON)
# The MIME type only takes effect in the database that shared-mime-info rebuilds; the package
# activates its trigger on the folder the type is installed into, on install and on removal.
set(CPACK_DEBIAN_PACKAGE_DEPENDS shared-mime-info)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/data/debian/triggers)
include(CPack)
