# Which headers are public, and the proof that each of them compiles alone.

# Private are *_data.h, *_impl.h and everything under platform/ but components/.
function(velmoria_public_headers result)
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/velmoria/*.h)
  list(FILTER headers EXCLUDE REGEX "_(data|impl)\\.h$")
  set(components ${headers})
  list(FILTER components INCLUDE REGEX "/velmoria/platform/components/")
  list(FILTER headers EXCLUDE REGEX "/velmoria/platform/")
  list(APPEND headers ${components})
  set(${result} ${headers} PARENT_SCOPE)
endfunction()

# Target headers_alone: one generated source a header, which includes that header and nothing before it.
function(velmoria_headers_alone)
  foreach(header IN LISTS ARGN)
    file(RELATIVE_PATH path ${PROJECT_SOURCE_DIR} ${header})
    string(REPLACE "/" "_" name ${path})
    set(source ${CMAKE_CURRENT_BINARY_DIR}/headers_alone/${name}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "#include \"${path}\"  // NOLINT\n")
    list(APPEND sources ${source})
  endforeach()
  if(sources)
    add_library(headers_alone OBJECT EXCLUDE_FROM_ALL ${sources})
    velmoria_compile_settings(headers_alone)
  endif()
endfunction()
