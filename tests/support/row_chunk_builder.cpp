#include "tests/support/row_chunk_builder.h"

#include <cstring>
#include <string>
#include <utility>

#include "velmoria/runtime/error.h"

namespace velmoria::test {

namespace {

template <class T>
void Store(std::byte* at, T value) noexcept {
  std::memcpy(at, &value, sizeof value);
}

// How a value is brought into a storage and, for fixed ones, written; in the order of ColumnStorage.
struct Writing {
  Variant (*Convert)(const Variant&);
  void (*Write)(std::byte*, const Variant&);
};

Variant CheckedBytes(const Variant& value) {
  if (!value.IsByteArray()) Fail(RuntimeFailure::TypeMismatch);
  return value;
}

constexpr Writing kWritings[] = {
    {[](const Variant& value) { return Variant(value.AsInteger()); },
     [](std::byte* at, const Variant& value) { Store(at, value.AsInteger()); }},
    {[](const Variant& value) { return Variant(value.AsLong()); },
     [](std::byte* at, const Variant& value) { Store(at, value.AsLong()); }},
    {[](const Variant& value) { return Variant(Decimal::From(value.AsDecimal().AsInt64())); },
     [](std::byte* at, const Variant& value) { Store(at, value.AsDecimal().AsInt64()); }},
    {[](const Variant& value) { return Variant(value.AsSingle()); },
     [](std::byte* at, const Variant& value) { Store(at, value.AsSingle()); }},
    {[](const Variant& value) { return Variant(value.AsDouble()); },
     [](std::byte* at, const Variant& value) { Store(at, value.AsDouble()); }},
    {[](const Variant& value) { return Variant(value.AsCurrency()); },
     [](std::byte* at, const Variant& value) { Store(at, value.AsCurrency()); }},
    {[](const Variant& value) { return Variant(value.AsDecimal()); },
     [](std::byte* at, const Variant& value) { Store(at, value.AsDecimal()); }},
    {[](const Variant& value) { return Variant(value.AsDate()); },
     [](std::byte* at, const Variant& value) { Store(at, value.AsDate()); }},
    {[](const Variant& value) { return Variant(value.AsBoolean()); },
     [](std::byte* at, const Variant& value) { Store<Byte>(at, value.AsBoolean() ? 1 : 0); }},
    {[](const Variant& value) { return Variant(value.AsByte()); },
     [](std::byte* at, const Variant& value) { Store(at, value.AsByte()); }},
    {[](const Variant& value) { return Variant(value.AsText()); }, nullptr},
    {CheckedBytes, nullptr},
    {[](const Variant&) { return Variant(); }, nullptr},
};

const Writing& WritingOf(ColumnStorage storage) noexcept { return kWritings[static_cast<std::size_t>(storage)]; }

using Rows = std::vector<std::vector<Variant>>;

void FillFixed(RowChunk::Column& column, const Rows& rows, std::size_t place) {
  const std::size_t width = StorageWidth(column.Storage);
  column.Values = std::make_unique<std::byte[]>(rows.size() * width);
  std::byte* at = column.Values.get();
  for (const auto& row : rows) {
    if (!row[place].IsNull()) WritingOf(column.Storage).Write(at, row[place]);
    at += width;
  }
}

void FillArena(RowChunk::Column& column, const Rows& rows, std::size_t place) {
  std::vector<std::size_t> ends;
  ends.reserve(rows.size());
  for (const auto& row : rows) {
    const auto bytes = row[place].Bytes();
    column.Arena.append(row[place].TextView());
    column.Arena.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    ends.push_back(column.Arena.size());
  }
  if (column.Arena.size() > ValueEnds::kMostBytes) Fail(RuntimeFailure::Overflow);
  column.Ends = ValueEnds(rows.size(), column.Arena.size());
  for (std::size_t row = 0; row < rows.size(); ++row) column.Ends.Set(row, ends[row]);
}

void FillNullBits(RowChunk::Column& column, const Rows& rows, std::size_t place) {
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (!rows[row][place].IsNull()) continue;
    if (!column.NullBits) column.NullBits = std::make_unique<std::uint64_t[]>((rows.size() + 63) / 64);
    column.NullBits[row / 64] |= std::uint64_t{1} << (row % 64);
  }
}

RowChunk::Column MakeColumn(ColumnStorage storage, const Rows& rows, std::size_t place) {
  RowChunk::Column column;
  column.Storage = storage;
  FillNullBits(column, rows, place);
  if (StorageWidth(storage) != 0) {
    FillFixed(column, rows, place);
  } else if (storage != ColumnStorage::Placeholder) {
    FillArena(column, rows, place);
  }
  return column;
}

}  // namespace

RowChunkBuilder::RowChunkBuilder(std::vector<ColumnStorage> storages) : storages_(std::move(storages)) {}

void RowChunkBuilder::AddRow(std::initializer_list<Variant> values) { AddRow(std::vector<Variant>(values)); }

void RowChunkBuilder::AddRow(const std::vector<Variant>& values) {
  if (values.size() != storages_.size()) Fail(RuntimeFailure::SubscriptOutOfRange);
  std::vector<Variant> row;
  row.reserve(values.size());
  for (std::size_t place = 0; place < values.size(); ++place) {
    const bool null = values[place].IsNull() && storages_[place] != ColumnStorage::Placeholder;
    row.push_back(null ? Variant::Null() : WritingOf(storages_[place]).Convert(values[place]));
  }
  rows_.push_back(std::move(row));
}

std::shared_ptr<const RowChunk> RowChunkBuilder::Build() {
  const Rows rows = std::exchange(rows_, {});
  std::vector<RowChunk::Column> columns;
  columns.reserve(storages_.size());
  for (std::size_t place = 0; place < storages_.size(); ++place) {
    columns.push_back(MakeColumn(storages_[place], rows, place));
  }
  return std::make_shared<const RowChunk>(std::move(columns), rows.size());
}

}  // namespace velmoria::test
