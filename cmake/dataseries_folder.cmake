# dataseries_folder(TARGET SOURCES ...): an OBJECT library of one folder of the tree. Includes are written from the top
# of the tree ("platform/identity/ColumnIDs.h").
function(dataseries_folder target)
    add_library(${target} OBJECT ${ARGN})
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${target} PRIVATE Boost::headers)
endfunction()

# dataseries_headers(TARGET FOLDERS ...): the public headers of the folders, those of their subfolders not included. A
# header named *_internal.h is private.
function(dataseries_headers target)
    set(headers)
    foreach(folder IN LISTS ARGN)
        file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.h ${PROJECT_SOURCE_DIR}/${folder}/*.def)
        list(FILTER found EXCLUDE REGEX "_internal\\.h$")
        list(APPEND headers ${found})
    endforeach()
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${headers})
endfunction()
