// The streams the manager handed out, by address, each with the converted file it reads
// (deleted after the stream is destroyed, since the stream holds the file open).
#pragma once

#include <map>
#include <memory>
#include <string>

#include "api/temporary_file.hpp"
#include "palvex/interfaces.hpp"

namespace ns_sensor {

class MgjsonStreamImpl;

class StreamSet {
 public:
  StreamSet();
  // Destroys the streams still out and deletes their converted files.
  ~StreamSet();
  StreamSet(const StreamSet &) = delete;
  StreamSet &operator=(const StreamSet &) = delete;

  // A new stream over the MGJSON file at path; convertedFile (may be empty) goes with it.
  IMgjsonStream *Add(const std::string &path, TemporaryFile convertedFile);

  // Destroys *stream and nulls it: NoStreamCreated (56) when the set is empty,
  // InvalidStream (57) when the stream is not in it. The stream is found by its address,
  // never used before.
  void Release(IMgjsonStream **stream);

  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    TemporaryFile convertedFile;              // declared first: goes after the stream
    std::unique_ptr<MgjsonStreamImpl> stream;
  };
  std::map<IMgjsonStream *, Entry> entries_;
};

}  // namespace ns_sensor
