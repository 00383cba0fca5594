# Finishes the files of the Debian packages before they are packed: adds the documents that Debian
# asks for and the examples, strips the libraries, and lists their symbols. CPack runs this; other ways
# to install copy the libraries as they were linked, and no documents.
set(here ${CMAKE_CURRENT_LIST_DIR})
set(staged ${CPACK_TEMPORARY_DIRECTORY})

# list_symbols(LIBRARY SONAME PACKAGE) lists what a shared library exports, each with the first
# version that had it: that of the first kept binary interface that names it, or else this one.
file(GLOB interfaces ${here}/../../abi/*.abi)
list(SORT interfaces COMPARE NATURAL)
function(list_symbols library soname package)
    execute_process(COMMAND nm -D --defined-only --format=posix ${library}
        OUTPUT_VARIABLE lines COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "[^\n]+" lines "${lines}")
    list(TRANSFORM lines REPLACE " .*" "")
    list(SORT lines)
    set(text "${soname} ${package} (>= ${CPACK_PACKAGE_VERSION})\n")
    string(APPEND text "* Build-Depends-Package: libfoundation-json-dev\n")
    foreach(symbol IN LISTS lines)
        set(since ${CPACK_PACKAGE_VERSION})
        foreach(interface IN LISTS interfaces)
            file(STRINGS ${interface} found LIMIT_COUNT 1 REGEX "<elf-symbol name='${symbol}'")
            if(found)
                # The file is named after the library and the version.
                string(REGEX REPLACE "^.*-([0-9.]+)[.]abi$" "\\1" since ${interface})
                break()
            endif()
        endforeach()
        string(APPEND text " ${symbol}@Base ${since}\n")
    endforeach()
    file(WRITE ${CPACK_FOUNDATION_JSON_CONTROL}/${package}/symbols "${text}")
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} upper)
    set(documents ${staged}/${component}/usr/share/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
    file(MAKE_DIRECTORY ${documents})
    configure_file(${here}/copyright ${documents}/copyright COPYONLY)
    foreach(pair IN ITEMS "changelog changelog.Debian.gz" "../../CHANGELOG.md changelog.gz")
        separate_arguments(pair)
        list(GET pair 0 source)
        list(GET pair 1 name)
        execute_process(COMMAND gzip --best --no-name --stdout ${here}/${source}
            OUTPUT_FILE ${documents}/${name} COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
    if(component MATCHES "_Development$")
        file(COPY ${here}/../../examples DESTINATION ${documents}
            NO_SOURCE_PERMISSIONS
            FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
            DIRECTORY_PERMISSIONS
                OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    endif()

    # As Debian strips its own: CMake would leave the compiler's version.
    file(GLOB_RECURSE libraries ${staged}/${component}/*.so.*.*.* ${staged}/${component}/*.a)
    foreach(library IN LISTS libraries)
        if(library MATCHES "\\.py$" OR IS_SYMLINK ${library})
            continue()
        endif()
        set(kept --strip-unneeded)
        if(library MATCHES "\\.a$")
            set(kept --strip-debug --enable-deterministic-archives)
        endif()
        execute_process(COMMAND strip ${kept} --remove-section=.comment --remove-section=.note ${library}
            COMMAND_ERROR_IS_FATAL ANY)
        if(library MATCHES "/([^/]*\\.so\\.[0-9]+)\\.[^/]*$")
            list_symbols(${library} ${CMAKE_MATCH_1} ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
        endif()
    endforeach()
endforeach()
