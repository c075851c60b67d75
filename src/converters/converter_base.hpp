// The abstract converter: one object per conversion, made by its registry entry's create
// operation, run once through Convert and then released.
#pragma once

#include <utility>

#include "converters/conversion_request.hpp"

namespace ns_sensor {

class PX_ConverterHandlerBase {
 public:
  explicit PX_ConverterHandlerBase(ConversionRequest request) : request_(std::move(request)) {}
  virtual ~PX_ConverterHandlerBase() = default;
  PX_ConverterHandlerBase(const PX_ConverterHandlerBase &) = delete;
  PX_ConverterHandlerBase &operator=(const PX_ConverterHandlerBase &) = delete;

  // Runs the whole conversion. True: the MGJSON file was written at the output path;
  // false: the input holds nothing convertible. Failures raise.
  virtual bool Convert() = 0;

  const ConversionRequest &Request() const { return request_; }

 private:
  ConversionRequest request_;
};

}  // namespace ns_sensor
