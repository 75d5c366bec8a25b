#pragma once

#include "tests/support/fake_orders.h"
#include "velmoria/core/enumerations.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::test {

/// Three orders in a Recordset over a FakeAgent, of the class "Order" and its Action "Get" of SampleDesign:
///   Id (number)  Name (text of at most 10)  Placed (date)       Amount (double)  Open (Boolean)  Note (text)  Photo
///   1            Ada                        1998-06-01 09:00:00 12.5             True            Null         Empty
///   2            Ben                        1998-06-02 10:30:00 99               False           Null         Empty
///   3            Cyd                        Null                0                True            "call back"  Empty
/// Photo is a long column that was not fetched, the one way for a row to have an Empty value.
class SampleRows : public FakeOrders {
 public:
  explicit SampleRows(zEditFlags editFlags = efAll, const Variant& nextBookmark = {}, bool empty = false);

  PropertiesDataPtr Columns;
  RecordsetPtr Rows;

  PropertiesPtr Row(std::int32_t row) const;
  PropertiesPtr NewRow() const;
  /// The definition of a column.
  const PropertyData& Column(const char* name) const;
};

}  // namespace velmoria::test
