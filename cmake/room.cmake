# The rules that every target keeps: warnings are errors unless told otherwise, and the sanitizers asked for are on.
add_library(tolvenary_rules INTERFACE)
target_compile_options(
  tolvenary_rules INTERFACE -Wall -Wextra -Wpedantic -Wconversion $<$<BOOL:${TOLVENARY_WERROR}>:-Werror>
)
# Qt's lower-case macros get in the way of other libraries' headers (GLib has a field "signals").
target_compile_definitions(tolvenary_rules INTERFACE QT_NO_KEYWORDS)
# This warning takes sources that are compiled together for headers; what is private to one of them stays so all the same.
target_compile_options(
  tolvenary_rules INTERFACE $<$<AND:$<CXX_COMPILER_ID:GNU>,$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>:-Wno-subobject-linkage>
)
if(TOLVENARY_SANITIZE)
  # What they find ends the program: a message alone would pass for success.
  target_compile_options(
    tolvenary_rules INTERFACE -fsanitize=${TOLVENARY_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
  )
  target_link_options(tolvenary_rules INTERFACE -fsanitize=${TOLVENARY_SANITIZE})
endif()

# tolvenary_room(NAME SOURCES ... [LINKS ...] [PRIVATE_LINKS ...]): one room of the house as a static library.
# LINKS are the rooms and libraries that its headers may include, PRIVATE_LINKS those that only its sources may.
function(tolvenary_room name)
  cmake_parse_arguments(room "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${name} STATIC ${room_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${room_LINKS} PRIVATE ${room_PRIVATE_LINKS} tolvenary_rules)
endfunction()
