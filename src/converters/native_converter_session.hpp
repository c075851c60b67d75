// The session of a built-in converter: the document root it fills, the identifier written
// as the file's creator, and the commit that has the writer produce the file. Failures of
// the object model become the library's exceptions here: while filling, ConverterFailure;
// while writing, WriterFailure; both carry the object model's status as detail1.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "palvex/plugin_helpers.hpp"
#include "plugin_model/document_state.hpp"

namespace PX_PLUGIN {
class MgjsonRootImpl;
}

namespace ns_sensor {

class NativeConverterSession {
 public:
  // A root for outputPath with the library's MGJSON writer; context is the converter.
  NativeConverterSession(void *context, std::string outputPath);
  // The same with another writer (tests record what would be written).
  NativeConverterSession(void *context, std::string outputPath, PX_PLUGIN::DocumentWriterMaker makeWriter);
  // Lets go of the document; the file stays as commit left it.
  ~NativeConverterSession();
  NativeConverterSession(const NativeConverterSession &) = delete;
  NativeConverterSession &operator=(const NativeConverterSession &) = delete;

  // Written as the file's creator.
  void SetConverterIdentifier(std::string_view identifier);

  // Runs fill(root); a failed object model operation inside (PX_PluginException) raises
  // ConverterFailure.
  template <class Body>
  void Fill(Body &&fill) {
    try {
      std::forward<Body>(fill)(root_);
    } catch (const PX_PLUGIN::PX_PluginException &failure) {
      RaiseConverterFailure(failure);
    }
  }

  // Commits the root, which writes the file; a failure raises WriterFailure. True when the
  // file was written now.
  bool Finish();

  PX_PLUGIN::IMgjsonRoot_v1 *Root() const { return root_; }

 private:
  [[noreturn]] static void RaiseConverterFailure(const PX_PLUGIN::PX_PluginException &failure);

  std::shared_ptr<PX_PLUGIN::MgjsonRootImpl> owner_;
  PX_PLUGIN::IMgjsonRoot_v1 *root_ = nullptr;
};

// The maker of the library's MGJSON writer for a root.
PX_PLUGIN::DocumentWriterMaker LibraryDocumentWriter();

}  // namespace ns_sensor
