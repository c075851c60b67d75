// The converter of delimited text (comma- or tab-separated): reads the file's table and
// writes it as a document of one group per column.
#pragma once

#include <string_view>

#include "converters/converter_base.hpp"

namespace ns_sensor {

struct DelimitedFormat {
  char delimiter;
  std::string_view identifier;  // written as the file's creator
};

class DelimitedConverter : public PX_ConverterHandlerBase {
 public:
  DelimitedConverter(ConversionRequest request, DelimitedFormat format);

  // False when the file has no column or no data row: there is nothing to write (the
  // file format has no empty outline and no empty group). Raises the file layer's error
  // when the input cannot be opened or read.
  bool Convert() override;

 private:
  // Convert's own copy of the request, as every built-in converter keeps one.
  ConversionRequest work_;
  DelimitedFormat format_;
};

}  // namespace ns_sensor
