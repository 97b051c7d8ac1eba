# Fails unless the program BINARY bears the marks of a hardened build:
#   cmake -DBINARY=FILE -P check_hardening.cmake

cmake_minimum_required(VERSION 3.25)

find_program(readelf readelf REQUIRED)
find_program(objdump objdump REQUIRED)
execute_process(COMMAND ${readelf} -hldW --dyn-syms ${BINARY}
  OUTPUT_VARIABLE elf COMMAND_ERROR_IS_FATAL ANY)
# Looks only at main: the C library's start-up code has these instructions or not.
execute_process(COMMAND ${objdump} -d --no-show-raw-insn --disassemble=main ${BINARY}
  COMMAND grep -m1 -E "endbr64|bti|paciasp" OUTPUT_VARIABLE landing)
execute_process(COMMAND ${objdump} -d --no-show-raw-insn ${BINARY}
  COMMAND grep -m1 -E "or[lq] +\\$0x0,|str +xzr, \\[sp" OUTPUT_VARIABLE probing)

# require(WHAT PATTERN): the output of readelf must match.
function(require what pattern)
  if(NOT elf MATCHES "${pattern}")
    message(SEND_ERROR "${BINARY} has no ${what}")
  endif()
endfunction()

require("position-independent code" "Type: +DYN.*INTERP.*Flags:[^\n]* PIE")
require("read-only relocations" "GNU_RELRO")
require("immediate binding" "Flags: NOW")
require("stack without execution" "GNU_STACK [^\n]* RW ")
require("stack protector" "__stack_chk_fail")
require("checked functions" "__[a-z]+_chk[@ ]")
if(CMAKE_HOST_SYSTEM_PROCESSOR MATCHES "x86_64|aarch64" OR elf MATCHES "X86-64|AArch64")
  if(landing STREQUAL "")
    message(SEND_ERROR "${BINARY} has no control-flow protection")
  endif()
  if(probing STREQUAL "")
    message(SEND_ERROR "${BINARY} has no stack clash protection")
  endif()
endif()
