#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/row_block.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

class RowChanges;

/// What a back-end fills a Recordset with. A bookmark is Empty where there is no such position; NextBookmark is Empty
/// exactly when the page reached the end of the result. VirtualFirstNumber -1: the whole result is in this page. Engine
/// is the connection's.
struct RecordsetPage {
  PropertiesDataPtr Columns;
  Variant PrevBookmark{};
  Variant FirstBookmark{};
  Variant LastBookmark{};
  Variant NextBookmark{};
  RowBlock Rows{};
  StatisticsPtr Statistics{};
  std::int32_t VirtualFirstNumber = -1;
  zEngines Engine = engUnknown;
};

/// What the database assigned to a column during a write.
struct CounterValue {
  std::string Name;
  std::string SourceKey;
  Variant Value;
};

/// One page of rows in memory. The rows as fetched stay untouched and shared; changed and new rows lie over them, and
/// only those cost anything. Rows count from 0 and keep their number, deleted ones, too. A column given as a String is
/// a name; as a number it is an OrderNumber, except in SetValue, where it is a position among the definitions. What
/// needs the database it asks of its DatabaseAgent.
class Recordset final : public Object, public Reporting {
 public:
  Recordset();
  ~Recordset() override;
  std::string_view ReportedType() const noexcept override { return "Recordset"; }

  void Initialize(DatabaseAgentPtr agent, RecordsetPage page);

  const DatabaseAgentPtr& DatabaseAgent() const { return agent_; }
  const PropertiesDataPtr& Columns() const { return columns_; }
  zEngines Engine() const { return engine_; }
  /// Made on first read when none was given.
  StatisticsPtr Statistics();
  std::string Details() const;
  Variant PrevBookmark() const { return prevBookmark_; }
  Variant FirstBookmark() const { return firstBookmark_; }
  Variant LastBookmark() const { return lastBookmark_; }
  Variant NextBookmark() const { return nextBookmark_; }
  /// All rows of the page, new and deleted ones included.
  std::int32_t Count() const noexcept { return fetchedRows_ + addedRows_; }
  /// What the fetched rows occupy on the heap.
  std::size_t HeapBytes() const noexcept { return rows_.HeapBytes(); }
  /// The rows of the whole result; -1 while it is being opened. Asks the DatabaseAgent, which opens a closed one again.
  std::int32_t VirtualCount() const;
  std::int32_t VirtualFirstNumber() const { return virtualFirstNumber_; }
  /// The number behind the last row, 0 when the whole result is in this page.
  std::int32_t VirtualLastNumber() const;

  /// Raises 15112 for a row that is not there.
  PropertiesPtr GetPersistentProperties(std::int32_t row, const std::string& key);
  /// Appends a new row; raises 15027 unless this is the last page of its result.
  PropertiesPtr CreatePersistentProperties(const std::string& key);
  /// The members of a row's Properties that has ended, for another row to bind again; some may be null. Empty when none
  /// are kept.
  std::vector<PropertyPtr> TakeMembers() noexcept;
  /// Keeps those that nobody else holds and that are as good as new, unless some are kept already.
  void KeepMembers(std::vector<PropertyPtr> members) noexcept;
  /// Writes one row: a failed write leaves it as it is, to be corrected and written again. A new row of which nothing
  /// was written stays new.
  void UpdatePersistentProperties(const PropertiesPtr& properties);
  /// Writes every changed, then every new, then every row to be deleted. Both raise as the DatabaseAgent's routines do.
  void Update();
  /// Flags for deletion; a new row is deleted at once. 457 for a row that is flagged already.
  void DeletePersistentProperties(std::int32_t row);
  /// The row is gone from the database; 457 for one that is known to be.
  void FlagDeleted(std::int32_t row);

  /// The present value. Raises 15113 on a deleted row. A long column (dtByteArray, engines 2 to 5) is read from the
  /// database when it is first asked for or set, and kept; an empty or Null one reads as Empty. Raises 15130 then.
  Variant Values(std::int32_t row, const PropertyData& column);
  /// Raises 15072 for a column that is not there.
  void SetValue(std::int32_t row, const Variant& index, const Variant& value);
  void SetValue(std::int32_t row, const PropertyData& column, const Variant& value);
  /// The value before the first change since the row was saved, Empty for none. Raises 15113 on a deleted row. Here,
  /// and in Dirty and Undo, a column is looked for, and 15072 raised, only in a row that was changed and is not
  /// deleted.
  Variant OldValues(std::int32_t row, const Variant& index) const;
  Variant OldValues(std::int32_t row, const PropertyData& column) const;
  /// True, False for a deleted or unchanged row, or Empty when changed columns are back at their old values. A column
  /// of an old row that was Empty before does not count.
  Variant Dirty(std::int32_t row) const;
  /// Whether Dirty of the row is True.
  bool IsDirty(std::int32_t row) const;
  bool Dirty(std::int32_t row, const Variant& index) const;
  bool Dirty(std::int32_t row, const PropertyData& column) const;
  /// Row -1 sums the page up.
  zStateFlags StateFlags(std::int32_t row) const;
  /// Clears sfNew, sfpendingdelete and sfdirty where absent from flags, and sets nothing.
  void SetStateFlags(std::int32_t row, zStateFlags flags);
  /// The whole row, or one column of it. Puts back an old value that was Empty, Null, a date in another second, an
  /// object, an error or an array. Any other value that has really changed stays as it is now; the whole row is not
  /// dirty any more all the same. Either way a deletion not yet written is cancelled. Raises 15113 on a deleted row.
  void Undo(std::int32_t row);
  void Undo(std::int32_t row, const Variant& index);
  void Undo(std::int32_t row, const PropertyData& column);
  /// Stores what the database assigned, without making the row dirty. Raises 15072 for a column that is not there.
  void RefreshCounterFields(const std::vector<CounterValue>& values, std::int32_t row);

 private:
  std::string StateDetails() const override { return Details(); }
  PropertiesPtr BuildProperties(std::int32_t row, const std::string& key);
  std::int32_t AddRow();
  std::size_t ColumnOf(const Variant& index) const;
  std::size_t NumberedColumn(const Variant& index, const char* routine) const;
  std::size_t CellsOfRow() const;
  Variant Fetched(std::int32_t row, std::size_t column) const;
  Variant Present(std::int32_t row, std::size_t column) const;
  Variant PresentOrRead(std::int32_t row, std::size_t column);
  PropertyDataPtr DefinitionAt(std::size_t column) const;
  bool IsLong(std::int32_t row, std::size_t column) const;
  bool IsUnread(std::int32_t row, std::size_t column) const;
  void ReadLong(std::int32_t row, std::size_t column);
  void RefuseDeleted(std::int32_t row, const char* routine) const;
  RowChanges& Changes();

  void Store(std::int32_t row, std::size_t column, const Variant& value);
  void SetColumn(std::int32_t row, std::size_t column, const Variant& value);
  Variant OldColumn(std::int32_t row, std::size_t column) const;
  bool Differs(std::int32_t row, std::size_t column) const;
  zStateFlags SumOfStates() const;
  bool CancelDelete(std::int32_t row);
  void Restore(std::int32_t row, std::size_t column);

  void WriteRow(const PropertiesPtr& properties, bool isNew);
  void FileAsSaved(std::int32_t row);
  void NullEmptyValues(std::int32_t row);
  void UpdateRow(std::int32_t row);

  DatabaseAgentPtr agent_;
  PropertiesDataPtr columns_;
  StatisticsPtr statistics_;
  Variant prevBookmark_;
  Variant firstBookmark_;
  Variant lastBookmark_;
  Variant nextBookmark_;
  RowBlock rows_;
  mutable RowBlock::Place found_{};     // of foundRow_: the values of a row are mostly asked for together
  mutable std::int32_t foundRow_ = -1;  // a fetched row, or none yet
  std::size_t fetchedColumns_ = 0;
  std::int32_t fetchedRows_ = 0;
  std::int32_t addedRows_ = 0;
  std::int32_t virtualFirstNumber_ = -1;
  zEngines engine_ = engUnknown;
  std::unique_ptr<RowChanges> changes_;   // none while no row was touched
  std::vector<PropertyPtr> idleMembers_;  // rows are mostly looked at one after the other
  bool readsLong_ = false;                // a key that is itself long must not ask for itself
};

}  // namespace velmoria
