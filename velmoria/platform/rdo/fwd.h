#pragma once

// The classes of the RDO object model, forward-declared with their handles.

#include "velmoria/runtime/ref.h"

namespace velmoria {

class RdoCursor;
class rdoColumn;
class rdoConnection;
class rdoEngine;
class rdoEnvironment;
class rdoParameter;
class rdoQuery;
class rdoResultset;
class rdoTable;
class rdoTables;
using RdoCursorPtr = Ref<RdoCursor>;
using rdoColumnPtr = Ref<rdoColumn>;
using rdoConnectionPtr = Ref<rdoConnection>;
using rdoEnginePtr = Ref<rdoEngine>;
using rdoEnvironmentPtr = Ref<rdoEnvironment>;
using rdoParameterPtr = Ref<rdoParameter>;
using rdoQueryPtr = Ref<rdoQuery>;
using rdoResultsetPtr = Ref<rdoResultset>;
using rdoTablePtr = Ref<rdoTable>;
using rdoTablesPtr = Ref<rdoTables>;

}  // namespace velmoria
