#include "commands.hpp"

namespace palvex::cli {

bool ReadFileAndJsonArguments(const std::vector<std::string> &arguments, std::string &path, bool &json) {
  for (const std::string &argument : arguments) {
    if (argument == "--json") {
      json = true;
    } else if (path.empty() && !argument.empty() && argument[0] != '-') {
      path = argument;
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace palvex::cli
