# Compiles the message catalogues of resources/po/*.po with msgfmt. The build
# puts each <lang>.mo beside libfileinfo.so, where the library looks second;
# the install puts them in share/fileinfo/locale, where it looks first.
find_program(MSGFMT_PROGRAM msgfmt REQUIRED)
file(GLOB FILEINFO_PO_FILES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/po/*.po)
set(FILEINFO_MO_FILES)
foreach(po ${FILEINFO_PO_FILES})
  get_filename_component(lang ${po} NAME_WE)
  set(mo ${PROJECT_BINARY_DIR}/${lang}.mo)
  add_custom_command(OUTPUT ${mo}
    COMMAND ${MSGFMT_PROGRAM} -o ${mo} ${po}
    DEPENDS ${po}
    COMMENT "Compiling message catalogue ${lang}.mo")
  list(APPEND FILEINFO_MO_FILES ${mo})
endforeach()
add_custom_target(fi_translations ALL DEPENDS ${FILEINFO_MO_FILES})
install(FILES ${FILEINFO_MO_FILES} DESTINATION ${CMAKE_INSTALL_DATADIR}/fileinfo/locale)
