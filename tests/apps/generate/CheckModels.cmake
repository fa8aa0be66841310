# Generates the sample models, reads them back and compares with what their construction says.

file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}")

function(generate)
  execute_process(COMMAND "${GENERATE}" ${ARGN} WORKING_DIRECTORY "${FOLDER}" RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(SEND_ERROR "kova-generate ${ARGN} ended with ${status}")
  endif()
endfunction()

# check(file figure value...): a value is equal, or the beginning of the figure.
function(check file)
  execute_process(
    COMMAND "${TRANSLATE}" --stats=json --dry-run "${file}"
    WORKING_DIRECTORY "${FOLDER}"
    OUTPUT_VARIABLE figures
    RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(SEND_ERROR "${file}: kova-translate ended with ${status}")
    return()
  endif()
  list(APPEND ARGN warnings 0 errors 0)
  while(ARGN)
    list(POP_FRONT ARGN name value)
    string(JSON found GET "${figures}" ${name})
    string(LENGTH "${value}" length)
    string(SUBSTRING "${found}" 0 ${length} beginning)
    if(NOT beginning STREQUAL value OR (length LESS 6 AND NOT found STREQUAL value))
      message(SEND_ERROR "${file}: ${name} is ${found}, not ${value}")
    endif()
  endwhile()
endfunction()

# Three edges for each of the segments: plate 23; two bearings of flange 13, tube 2, shaft 1 and four
# bolts of 7; gears 151 and 223; hub 2. The cage has 16 curves, the arrow one.
set(train parts 9 instances 18 edges 1478 triangles 15280 edge_length 14507.77229 unit millimeter)
generate(train.stp)
check(train.stp ${train})
generate(--format step again)
file(READ "${FOLDER}/train.stp" first)
file(READ "${FOLDER}/again" second)
string(REPLACE "FILE_NAME('again'" "FILE_NAME('train'" second "${second}")
if(NOT first STREQUAL second)
  message(SEND_ERROR "the assembly differs from run to run")
endif()
# Names are ASCII alone, with doubled apostrophes and all kinds of escapes.
foreach(text "'Plaque d''assise perc\\X\\E9e'" "'\\X2\\04200443" "Gr\\X2\\00F600DF\\X0\\e 2'")
  string(FIND "${first}" "${text}" at)
  if(at EQUAL -1)
    message(SEND_ERROR "the assembly has no ${text}")
  endif()
endforeach()
string(REGEX MATCH "[^\n -~]" foreign "${first}")
if(foreign)
  message(SEND_ERROR "the assembly has characters outside ASCII")
endif()

generate(--repeat 3 three.step)
check(three.step parts 27 instances 54 edges 4434 triangles 45840 edge_length 43523.31687)
generate(--megabytes 2.5 size.step)
file(SIZE "${FOLDER}/size.step" size)
if(size LESS 2500000 OR size GREATER 4000000)
  message(SEND_ERROR "size.step has ${size} bytes")
endif()

foreach(form "" --ascii)
  generate(--shape gear,knot ${form} mesh.stl)
  generate(--shape gear,knot ${form} mesh.ply)
  foreach(file mesh.stl mesh.ply)
    check(${file} triangles 25572)
  endforeach()
endforeach()
