#pragma once

#include "velmoria/platform/odbc/calls.h"

namespace velmoria::test {

/// The names of the call level interface's types, for a class that stands in for a driver.
struct OdbcTypes {
  using Handle = odbc::Handle;
  using Code = odbc::Code;
  using Small = odbc::Small;
  using Word = odbc::Word;
  using Number = odbc::Number;
  using Length = odbc::Length;
  using ULength = odbc::ULength;
  using Char = odbc::Char;
};

}  // namespace velmoria::test
