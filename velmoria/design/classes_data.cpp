#include "velmoria/design/classes_data.h"

#include "velmoria/design/class_data.h"
#include "velmoria/design/design_collection_data_impl.h"

namespace velmoria {

template class DesignCollectionData<ClassKind>;

ClassesData::ClassesData() = default;
ClassesData::~ClassesData() = default;

}  // namespace velmoria
