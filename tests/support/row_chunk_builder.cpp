#include "tests/support/row_chunk_builder.h"

#include <algorithm>
#include <cstring>
#include <span>
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

void FillFixed(const RowChunk::Column& column, const Rows& rows, std::size_t place) {
  const std::size_t width = StorageWidth(column.Storage);
  std::byte* at = column.Values;
  std::fill(at, at + rows.size() * width, std::byte{0});
  for (const auto& row : rows) {
    if (!row[place].IsNull()) WritingOf(column.Storage).Write(at, row[place]);
    at += width;
  }
}

/// The bytes of a text or a byte array; none of any other value.
std::span<const std::byte> BytesOf(const Variant& value) {
  return value.IsByteArray() ? std::as_bytes(value.Bytes()) : std::as_bytes(std::span(value.TextView()));
}

void FillArena(const RowChunk::Column& column, const Rows& rows, std::size_t place) {
  std::size_t end = 0;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const auto bytes = BytesOf(rows[row][place]);
    std::copy(bytes.begin(), bytes.end(), column.Values + end);
    column.Ends.Set(row, end += bytes.size());
  }
}

RowChunk::Column Describe(ColumnStorage storage, const Rows& rows, std::size_t place) {
  RowChunk::Column column{.Storage = storage};
  const bool isInArena = StorageWidth(storage) == 0 && storage != ColumnStorage::Placeholder;
  for (const auto& row : rows) {
    column.HasNulls = column.HasNulls || row[place].IsNull();
    if (isInArena) column.Bytes += static_cast<std::uint32_t>(BytesOf(row[place]).size());
  }
  return column;
}

void Fill(const RowChunk::Column& column, const Rows& rows, std::size_t place) {
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (rows[row][place].IsNull()) column.NullBits[row / 64] |= std::uint64_t{1} << (row % 64);
  }
  if (column.Storage == ColumnStorage::Placeholder) return;
  StorageWidth(column.Storage) != 0 ? FillFixed(column, rows, place) : FillArena(column, rows, place);
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
    columns.push_back(Describe(storages_[place], rows, place));
  }
  auto chunk = std::make_shared<RowChunk>(std::move(columns), rows.size());
  for (std::size_t place = 0; place < storages_.size(); ++place) Fill(chunk->Data(place), rows, place);
  return chunk;
}

}  // namespace velmoria::test
