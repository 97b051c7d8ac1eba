# What makes a mistake in released code hard to exploit. ZELVORA_HARDEN asks for it; the release and app
# presets do. Builds with sanitizers have checks of their own and leave it out.

include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

add_library(zelvora_hardening INTERFACE)
target_compile_options(zelvora_hardening INTERFACE -fstack-protector-strong)
# Checked string and memory functions; needs an optimised build.
check_cxx_compiler_flag("-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3" ZELVORA_HAS_FORTIFY_3)
if(ZELVORA_HAS_FORTIFY_3)
  set(fortify_level 3)
else()
  set(fortify_level 2)
endif()
target_compile_options(zelvora_hardening INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${fortify_level})
# Jumps land only where they may, and no stack jumps over its guard. Not every processor has these checks.
check_cxx_compiler_flag(-fcf-protection=full ZELVORA_HAS_CF_PROTECTION)
if(ZELVORA_HAS_CF_PROTECTION)
  target_compile_options(zelvora_hardening INTERFACE -fcf-protection=full)
endif()
check_cxx_compiler_flag(-fstack-clash-protection ZELVORA_HAS_STACK_CLASH_PROTECTION)
if(ZELVORA_HAS_STACK_CLASH_PROTECTION)
  target_compile_options(zelvora_hardening INTERFACE -fstack-clash-protection)
endif()
# All addresses are resolved at the start and are read-only after that.
target_link_options(zelvora_hardening INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)

# The build fails when TARGET's program lacks any of it.
function(zelvora_require_hardened target)
  if(ZELVORA_HARDEN)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${CMAKE_COMMAND} -DBINARY=$<TARGET_FILE:${target}>
              -P ${PROJECT_SOURCE_DIR}/tests/hardening/check_hardening.cmake VERBATIM)
  endif()
endfunction()
