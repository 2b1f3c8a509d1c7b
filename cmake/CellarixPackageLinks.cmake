# Runs in the staged tree before it becomes a .deb: links from /usr into the prefix, and what Debian wants to find
# under /usr/share/doc.
set(stage ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
set(files ${CPACK_CELLARIX_PREFIX}/files)

# link_each(DIRECTORY PATTERN): every such file below files/share appears at the same place below /usr/share.
function(link_each directory pattern)
  file(GLOB_RECURSE found RELATIVE ${stage}${files}/share/${directory} ${stage}${files}/share/${directory}/${pattern})
  foreach(name IN LISTS found)
    set(link ${stage}/usr/share/${directory}/${name})
    get_filename_component(parent ${link} DIRECTORY)
    file(MAKE_DIRECTORY ${parent})
    file(CREATE_LINK ${files}/share/${directory}/${name} ${link} SYMBOLIC)
  endforeach()
endfunction()

link_each(applications *.desktop)
link_each(dbus-1/services *.service)
link_each(metainfo *.xml)
link_each(icons *.svg)
link_each(icons *.png)

if(EXISTS ${stage}${files}/bin/cellarix)
  file(MAKE_DIRECTORY ${stage}/usr/bin)
  file(CREATE_LINK ${files}/bin/cellarix ${stage}/usr/bin/cellarix SYMBOLIC)
endif()

# gzip(FROM TO): compressed as Debian wants it, the same for the same input.
function(gzip from to)
  get_filename_component(parent ${to} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  execute_process(COMMAND gzip -9nc ${from} OUTPUT_FILE ${to} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

gzip(${CPACK_CELLARIX_SOURCE}/docs/cellarix.1 ${stage}/usr/share/man/man1/cellarix.1.gz)
file(REMOVE_RECURSE ${stage}${files}/share/man)

set(data ${CPACK_CELLARIX_SOURCE}/src/platform/data/debian)
file(COPY ${data}/copyright DESTINATION ${stage}/usr/share/doc/cellarix)
gzip(${data}/changelog ${stage}/usr/share/doc/cellarix/changelog.gz)
file(MAKE_DIRECTORY ${stage}/usr/share/lintian/overrides)
configure_file(${data}/lintian-overrides ${stage}/usr/share/lintian/overrides/cellarix COPYONLY)
execute_process(COMMAND find ${stage} -type d -exec chmod 755 {} + COMMAND_ERROR_IS_FATAL ANY)
