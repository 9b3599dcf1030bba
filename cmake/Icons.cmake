# The program's icon as pictures, for desktops and windows that want pixels: made from the one drawing.
find_program(VANTREL_RSVG_CONVERT rsvg-convert REQUIRED)
set(VANTREL_ICON_SIZES 16 32 48 64 128)
set(VANTREL_ICON_FOLDER ${PROJECT_BINARY_DIR}/icons)

set(drawing ${PROJECT_SOURCE_DIR}/packaging/com.vantrel.Vantrel.svg)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${drawing})
file(MAKE_DIRECTORY ${VANTREL_ICON_FOLDER})
foreach(size IN LISTS VANTREL_ICON_SIZES)
  execute_process(COMMAND ${VANTREL_RSVG_CONVERT} --width ${size} --height ${size}
                          --output ${VANTREL_ICON_FOLDER}/${size}.png ${drawing} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
