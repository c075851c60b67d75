#include "opened_file.hpp"

namespace palvex::cli {

OpenedFile::OpenedFile(IPalvex *manager, const std::string &path, palvex::host::ErrorLog &errors)
    : manager_(manager), errors_(errors) {
  if (manager_ != nullptr) manager_->OpenFile(&handler_, path.c_str(), nullptr, &errors_);
}

OpenedFile::~OpenedFile() {
  if (manager_ != nullptr && handler_ != nullptr) manager_->CloseFile(&handler_, &errors_);
}

}  // namespace palvex::cli
