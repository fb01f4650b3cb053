#include <dlfcn.h>
#include <fmt/format.h>

#include "tools/ndx/Failure.h"
#include "tools/ndx/commands.h"
#include "tools/ndx/quote.h"

namespace nd::tools {

void loadModule(const std::string& path) {
  constexpr const char* EntryPoint = "nd_register_adapters";
  // Without a slash the system's library folders would be searched instead of the current one.
  const std::string location = path.find('/') == std::string::npos ? "./" + path : path;
  void* const module =
      ::dlopen(location.c_str(), RTLD_NOW | RTLD_LOCAL);  // stays: its adapters outlive this call
  if (module == nullptr) {
    const char* const why = ::dlerror();
    throw Failure(ExitStatus::WrongUsage, fmt::format("the adapter module {} can't be loaded", quote(path)),
                  {why == nullptr ? std::string("The system gives no reason.") : std::string(why)});
  }
  const auto entry = reinterpret_cast<bool (*)()>(::dlsym(module, EntryPoint));
  if (entry == nullptr) {
    throw Failure(ExitStatus::WrongUsage, fmt::format("{} is no adapter module", quote(path)),
                  {fmt::format("It has no function {}.", quote(EntryPoint))});
  }
  if (!entry()) {
    throw Failure(ExitStatus::WrongUsage,
                  fmt::format("the adapters of {} could not be registered", quote(path)),
                  {"An adapter of the same name is registered already; name each module once."});
  }
}

}  // namespace nd::tools
