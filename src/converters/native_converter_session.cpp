#include "converters/native_converter_session.hpp"

#include <new>

#include "api/px_exception.hpp"
#include "plugin_model/mgjson_writer.hpp"
#include "plugin_model/root_impl.hpp"

namespace ns_sensor {
namespace {

// A status as the library's exception: memory exhaustion stays what it is, so the host
// hears code 34 as from anywhere else; any other status becomes the row's failure.
[[noreturn]] void RaiseSessionFailure(Msg id, const PX_PLUGIN::PX_PluginException &failure) {
  if (failure.code() == PX_PLUGIN::PX_PLUGIN_OUT_OF_MEMORY) throw std::bad_alloc();
  RaiseError({Message(id).code, Message(id).literal.data(), failure.code()});
}

}  // namespace

NativeConverterSession::NativeConverterSession(void *context, std::string outputPath)
    : NativeConverterSession(context, std::move(outputPath), LibraryDocumentWriter()) {}

NativeConverterSession::NativeConverterSession(void *context, std::string outputPath,
                                               PX_PLUGIN::DocumentWriterMaker makeWriter) {
  PX_PLUGIN::RootSettings settings;
  settings.context = context;
  settings.outputPath = std::move(outputPath);
  settings.makeWriter = std::move(makeWriter);
  try {
    owner_ = PX_PLUGIN::MgjsonRootImpl::Create(std::move(settings));
  } catch (const PX_PLUGIN::PX_PluginException &failure) {
    RaiseConverterFailure(failure);
  }
  root_ = owner_->HandOut();
}

NativeConverterSession::~NativeConverterSession() {
  root_->Release();
  owner_->Dispose();
}

void NativeConverterSession::SetConverterIdentifier(std::string_view identifier) {
  Fill([identifier](PX_PLUGIN::IMgjsonRoot_v1 *root) {
    PX_PLUGIN::Call(root, &PX_PLUGIN::IMgjsonRoot_v1::SetCreator, identifier.data(),
                    PX_PLUGIN::TextLength(identifier));
  });
}

bool NativeConverterSession::Finish() {
  std::uint32_t committed = 0;
  try {
    PX_PLUGIN::Call(root_, &PX_PLUGIN::IMgjsonRoot_v1::Commit, &committed);
  } catch (const PX_PLUGIN::PX_PluginException &failure) {
    RaiseSessionFailure(Msg::WriterFailure, failure);
  }
  return committed != 0;
}

void NativeConverterSession::RaiseConverterFailure(const PX_PLUGIN::PX_PluginException &failure) {
  RaiseSessionFailure(Msg::ConverterFailure, failure);
}

PX_PLUGIN::DocumentWriterMaker LibraryDocumentWriter() { return PX_PLUGIN::MakeMgjsonWriter; }

}  // namespace ns_sensor
