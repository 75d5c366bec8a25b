#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>

namespace velmoria {

/// A counted handle to an Object. An empty handle is what the documentation calls "none".
template <class T>
using Ref = boost::intrusive_ptr<T>;

}  // namespace velmoria
