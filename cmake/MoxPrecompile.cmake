# Reading the headers of the standard library takes about half the time of a build, so the large
# targets read them once. Builds without this find headers that a file forgets to include.
set(MOX_COMMON_HEADERS
  <algorithm> <array> <charconv> <cmath> <cstdint> <cstring> <filesystem> <functional> <iterator>
  <limits> <list> <map> <memory> <new> <numeric> <optional> <set> <span> <sstream> <stdexcept>
  <string> <string_view> <system_error> <tuple> <unordered_map> <unordered_set> <utility> <variant>
  <vector> <boost/noncopyable.hpp> <boost/shared_ptr.hpp> <boost/smart_ptr/make_shared.hpp>)

set(MOX_COMMON_TEST_HEADERS ${MOX_COMMON_HEADERS} <gtest/gtest.h>)
set(editor_headers <nlohmann/json.hpp>)
set(server_headers ${editor_headers} <boost/asio/ip/tcp.hpp> <boost/beast/websocket.hpp>)
set(preview_headers <vulkan/vulkan_raii.hpp>)

# Lets a target, if it is built, read headers once.
function(mox_precompile target)
  if(TARGET ${target})
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

foreach(target mox_materials mox_core mox_host mox_compile mox_pictures)
  mox_precompile(${target} ${MOX_COMMON_HEADERS})
endforeach()
mox_precompile(mox_editor ${MOX_COMMON_HEADERS} ${editor_headers})
mox_precompile(mox_server ${MOX_COMMON_HEADERS} ${server_headers})
mox_precompile(mox_preview ${MOX_COMMON_HEADERS} ${preview_headers})
mox_precompile(mox ${MOX_COMMON_HEADERS} <CLI/CLI.hpp>)
foreach(target mox_test_support mox_tests mox_compile_tests mox_exhaustion_tests)
  mox_precompile(${target} ${MOX_COMMON_TEST_HEADERS})
endforeach()
mox_precompile(mox_server_tests ${MOX_COMMON_TEST_HEADERS} ${server_headers})
foreach(target mox_numbers_tests mox_preview_tests)
  mox_precompile(${target} ${MOX_COMMON_TEST_HEADERS} ${preview_headers})
endforeach()
