# Warnings and sanitizers shared by every target of the project.
function(talvex_set_warnings target)
  target_compile_options(${target} PRIVATE
    $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra>
    $<$<COMPILE_LANGUAGE:C>:-Wall -Wextra>)
endfunction()

if(TALVEX_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

if(TALVEX_LIBFUZZER)
  # Coverage feedback for the library itself, not only the fuzz entry points.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
