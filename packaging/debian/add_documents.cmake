# Adds to the files of the Debian packages, before they are packed, the documents that Debian asks
# for. CPack runs this; who installs in another way gets none of them.
set(here ${CMAKE_CURRENT_LIST_DIR})
set(staged ${CPACK_TEMPORARY_DIRECTORY})
set(runtime ${CPACK_DEBIAN_FOUNDATION_JSON_RUNTIME_PACKAGE_NAME})
set(development ${CPACK_DEBIAN_FOUNDATION_JSON_DEVELOPMENT_PACKAGE_NAME})

set(documents ${staged}/foundation_json_Runtime/usr/share/doc/${runtime})
file(MAKE_DIRECTORY ${documents})
configure_file(${here}/copyright ${documents}/copyright COPYONLY)
foreach(pair IN ITEMS "changelog changelog.Debian.gz" "../../CHANGELOG.md changelog.gz")
    separate_arguments(pair)
    list(GET pair 0 source)
    list(GET pair 1 name)
    execute_process(COMMAND gzip --best --no-name --stdout ${here}/${source}
        OUTPUT_FILE ${documents}/${name} COMMAND_ERROR_IS_FATAL ANY)
endforeach()

# The one package needs the other, whose documents serve both.
set(documents ${staged}/foundation_json_Development/usr/share/doc)
file(MAKE_DIRECTORY ${documents})
file(CREATE_LINK ${runtime} ${documents}/${development} SYMBOLIC)
