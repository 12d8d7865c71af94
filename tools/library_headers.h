// Precompiled for the libraries, see library-headers.cmake. Every file still includes what it uses.
#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <libyang/libyang.h>
#include <nlohmann/json.hpp>
