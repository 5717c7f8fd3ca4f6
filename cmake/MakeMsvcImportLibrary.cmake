# Writes the import library for Microsoft's linker, with the C functions that a DLL exports. The C++ names are MinGW's,
# which no other compiler on Windows uses.
#
#     cmake -DDLL=... -DLIBRARY=... -DOBJDUMP=... -DDLLTOOL=... -P MakeMsvcImportLibrary.cmake

execute_process(
  COMMAND "${OBJDUMP}" -p "${DLL}"
  OUTPUT_VARIABLE listing
  RESULT_VARIABLE result)
string(REGEX MATCHALL "[ \t]quavin_[a-z0-9_]+\n" names "${listing}")
if(NOT result EQUAL 0 OR NOT names)
  message(FATAL_ERROR "${OBJDUMP} lists no C function that ${DLL} exports")
endif()

get_filename_component(dll_name "${DLL}" NAME)
get_filename_component(folder "${LIBRARY}" DIRECTORY)
get_filename_component(name "${LIBRARY}" NAME_WE)
list(JOIN names "" names)
set(definitions "${folder}/${name}.def")
file(WRITE "${definitions}" "LIBRARY ${dll_name}\nEXPORTS\n${names}")
execute_process(COMMAND "${DLLTOOL}" -m i386:x86-64 -d "${definitions}" -D "${dll_name}" -l "${LIBRARY}"
                RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${DLLTOOL} could not write ${LIBRARY}")
endif()
