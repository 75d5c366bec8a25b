#include <memory>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "tests/unit/properties/value_crossing_table.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

std::string Shown(const Variant& value) {
  const bool hasText = !value.IsNull() && !value.IsMissing() && !value.IsObject() && !value.IsArray();
  return value.TypeName() + (hasText ? ":" + value.AsText() : "");
}

/// One setter of a value in an apartment of its own, over an object of the data type that is clean and holds "before".
class Target {
 public:
  struct Options {
    zDataTypes DataType;
    zPropertyFlags Flags = pfAllowZeroLength;
    std::int32_t Size = 0;
  };

  virtual ~Target() = default;
  virtual void Set(const Variant& value) = 0;
  virtual Variant Stored() const = 0;
  virtual Variant Read() const = 0;
  /// Everything that a refused value must leave as it is.
  virtual std::string State() const = 0;
  /// What an accepted value changes beside itself.
  virtual void ExpectChanged() const {}
  virtual std::string MismatchText(const char* dataTypeName, const char* typeName) const {
    return std::string("' DataType: '") + dataTypeName + "'  ValueDataType: '" + typeName + "'";
  }
  virtual zErrors Mismatch() const { return errProperty_DataType; }
  virtual bool TestsLikeAProperty() const { return true; }
  virtual bool RefusesEmptyWhenRequired() const { return true; }

 private:
  ScopedApartment apartment_;
};

class PropertyTarget : public Target {
 public:
  Variant Read() const override { return property_->Value(); }
  std::string State() const override {
    std::string state = Shown(Stored()) + " after " + Shown(property_->OldValue()) + ", default ";
    state += Shown(property_->Data()->StoredDefaultValue());
    state += ", state " + std::to_string(static_cast<int>(property_->StateFlags()));
    state += property_->Dirty() ? ", dirty" : "";
    state += property_->DirtyValue() ? ", dirty value" : "";
    return state + ", events " + std::to_string(before_) + " and " + std::to_string(after_);
  }

 protected:
  void Listen() {
    property_->BeforeValueChange += [this](const Variant&, bool&) { ++before_; };
    property_->AfterValueChange += [this] { ++after_; };
  }

  PropertyPtr property_;
  int before_ = 0;
  int after_ = 0;
};

class FreeValue : public PropertyTarget {
 public:
  explicit FreeValue(const Options& options) {
    property_ = Framework()
                    .CreateProperty({.Name = "X",
                                     .Value = "before",
                                     .DataType = options.DataType,
                                     .Size = options.Size,
                                     .Flags = options.Flags})
                    ->Copy();
    Listen();
  }
  void Set(const Variant& value) override { property_->SetValue(value); }
  Variant Stored() const override { return property_->Data()->Value(); }
  void ExpectChanged() const override {
    EXPECT_EQ(property_->OldValue(), Variant("before"));
    EXPECT_TRUE(property_->Dirty());
    EXPECT_EQ(before_, 1);
    EXPECT_EQ(after_, 1);
  }
};

class BoundValue : public PropertyTarget {
 public:
  explicit BoundValue(const Options& options) {
    property_ = rows_.Row(0)->Item("Name");
    property_->SetDataType(options.DataType);
    property_->SetFlags(options.Flags);
    property_->SetSize(options.Size);
    property_->ClearDirty();
    Listen();
  }
  void Set(const Variant& value) override { property_->SetValue(value); }
  Variant Stored() const override { return rows_.Rows->Values(0, rows_.Column("Name")); }
  void ExpectChanged() const override {
    EXPECT_EQ(property_->OldValue(), Variant("Ada"));
    EXPECT_FALSE(property_->Dirty());
    EXPECT_TRUE(property_->DirtyValue());
    EXPECT_EQ(before_, 1);
    EXPECT_EQ(after_, 1);
  }

 private:
  SampleRows rows_;
};

class DefaultOfProperty : public PropertyTarget {
 public:
  explicit DefaultOfProperty(const Options& options) {
    property_ = Framework().CreateProperty({.Name = "X", .DefaultValue = "before"})->Copy();
    property_->SetDataType(options.DataType);
    property_->SetFlags(options.Flags);
    property_->SetSize(options.Size);
    property_->ClearDirty();
    Listen();
  }
  void Set(const Variant& value) override { property_->SetDefaultValue(value); }
  Variant Stored() const override { return property_->Data()->StoredDefaultValue(); }
  Variant Read() const override { return property_->DefaultValue(); }
  void ExpectChanged() const override {
    EXPECT_TRUE(property_->EmptyValue());
    EXPECT_FALSE(property_->Dirty());
    EXPECT_EQ(before_ + after_, 0);
  }
  bool RefusesEmptyWhenRequired() const override { return false; }
};

class DefaultOfDefinition : public DefaultOfProperty {
 public:
  using DefaultOfProperty::DefaultOfProperty;
  void Set(const Variant& value) override { property_->Data()->SetDefaultValue(value); }
};

class ValueOfAttribute : public Target {
 public:
  explicit ValueOfAttribute(const Options& options) {
    const auto data = Make<AttributeData>();
    data->Setup({.Name = "X", .Value = "before"}, true);
    data->SetDataType(options.DataType);
    data->SetSize(options.Size);
    data->ClearDirty();
    attribute_ = Make<Attribute>(data);
  }
  void Set(const Variant& value) override { attribute_->SetValue(value); }
  Variant Stored() const override { return attribute_->Data()->StoredValue(); }
  Variant Read() const override { return attribute_->Value(); }
  std::string State() const override { return Shown(Stored()) + (attribute_->Data()->Dirty() ? ", dirty" : ""); }
  void ExpectChanged() const override { EXPECT_TRUE(attribute_->Data()->Dirty()); }
  std::string MismatchText(const char* dataTypeName, const char* typeName) const override {
    return std::string("Attribute: 'X'  DataType: '") + dataTypeName + "'  ValueDataType: '" + typeName + "'";
  }
  zErrors Mismatch() const override { return errAttribute_DataType; }
  bool TestsLikeAProperty() const override { return false; }

 private:
  AttributePtr attribute_;
};

struct Setter {
  const char* Name;
  std::unique_ptr<Target> (*Make)(const Target::Options&);
};

template <class T>
std::unique_ptr<Target> Made(const Target::Options& options) {
  return std::make_unique<T>(options);
}

constexpr Setter kSetters[] = {
    {"FreeValue", Made<FreeValue>},
    {"BoundValue", Made<BoundValue>},
    {"DefaultOfProperty", Made<DefaultOfProperty>},
    {"DefaultOfDefinition", Made<DefaultOfDefinition>},
    {"ValueOfAttribute", Made<ValueOfAttribute>},
};

void ExpectRefused(Target& target, const Variant& value, zErrors number, const RaisedExpectation& expected) {
  const auto before = target.State();
  ExpectRaised(number, [&] { target.Set(value); }, expected);
  EXPECT_EQ(target.State(), before);
}

// The failure of the conversion stands beside the refusal, under its own number.
void ExpectMismatch(Target& target, const Variant& value, const char* cause, const std::string& text) {
  const auto before = target.State();
  const auto error = Thrown([&] { target.Set(value); });
  const auto warning = Framework().Messages()->Item(std::string(cause).substr(1, std::string(cause).size() - 2));
  ASSERT_TRUE(warning) << "no " << cause << " beside it";
  EXPECT_EQ(warning->SeverityFlags(), svfWarning);
  CheckRaised(target.Mismatch(), error, {.Text = text, .Count = 2}, {__FILE__, __LINE__});
  EXPECT_EQ(target.State(), before);
}

void ExpectKept(Target& target, const Variant& value) {
  target.Set(value);
  EXPECT_EQ(target.Stored().TypeName(), value.TypeName());
  EXPECT_TRUE(target.Stored() == value);
  EXPECT_EQ(Framework().Messages()->Count(), 0);
  target.ExpectChanged();
}

using CrossingParam = std::tuple<Setter, CrossingRow>;

class ValueCrossingTest : public testing::TestWithParam<CrossingParam> {
 protected:
  const CrossingRow& Row() const { return std::get<1>(GetParam()); }
  std::unique_ptr<Target> Over(const Target::Options& options) const { return std::get<0>(GetParam()).Make(options); }
};

std::string NameOfCrossing(const testing::TestParamInfo<CrossingParam>& info) {
  return std::string(std::get<0>(info.param).Name) + "_" + std::get<1>(info.param).Name;
}

TEST_P(ValueCrossingTest, TypeWithAStorageConvertsOrRefuses) {
  for (std::size_t i = 0; i < std::size(kStorageColumns); ++i) {
    const auto& column = kStorageColumns[i];
    const auto* cell = Row().Cells[i];
    SCOPED_TRACE(column.DataTypeName);
    const auto target = Over({.DataType = column.DataType});
    if (IsRefused(cell)) {
      ExpectMismatch(*target, Row().Given(), cell, target->MismatchText(column.DataTypeName, Row().TypeName));
      continue;
    }
    target->Set(Row().Given());
    EXPECT_EQ(Shown(target->Stored()), std::string(column.Storage) + ":" + cell);
    EXPECT_EQ(Shown(target->Read()), std::string(column.Storage) + ":" + cell);
    target->ExpectChanged();
  }
}

TEST_P(ValueCrossingTest, TypeWithoutOneKeepsTheValue) {
  for (const auto dataType : kKeepingTypes) {
    SCOPED_TRACE(static_cast<std::int32_t>(dataType));
    for (const std::int32_t size : {0, 1}) {
      const auto target = Over({.DataType = dataType, .Size = size});
      ExpectKept(*target, Row().Given());
    }
  }
}

TEST_P(ValueCrossingTest, BinaryTypeOfAPropertyTakesBytesVariantArraysAndTexts) {
  const auto target = Over({.DataType = dtByteArray, .Size = 1});
  if (Row().IsBinary || !target->TestsLikeAProperty()) return ExpectKept(*target, Row().Given());
  const auto text = std::string("Property: '") + (target->State().starts_with("String:Ada") ? "Name" : "X") +
                    "'  ValueType: '" + Row().TypeName + "'";
  ExpectRefused(*target, Row().Given(), errValue_BLOB, {.Text = text, .Count = 1});
}

TEST_P(ValueCrossingTest, SizeLimitsTheTextForm) {
  const std::string text = Row().Cells[0];
  const auto target = Over({.DataType = dtString, .Size = 2});
  if (IsRefused(Row().Cells[0])) return ExpectMismatch(*target, Row().Given(), no, "'String'");
  if (text.size() <= 2) {
    target->Set(Row().Given());
    EXPECT_EQ(Shown(target->Stored()), "String:" + text);
    return;
  }
  const auto expected = "Size Limit: 2  Value Length: " + std::to_string(text.size());
  ExpectRefused(*target, Row().Given(), errValue_Size, {.Text = expected, .Count = 1});
}

TEST_P(ValueCrossingTest, SizeLimitsNoOtherType) {
  for (std::size_t i = 1; i < std::size(kStorageColumns); ++i) {
    if (IsRefused(Row().Cells[i])) continue;
    const auto target = Over({.DataType = kStorageColumns[i].DataType, .Size = 1});
    target->Set(Row().Given());
    EXPECT_EQ(target->Stored().AsText(), Row().Cells[i]);
  }
}

INSTANTIATE_TEST_SUITE_P(Table, ValueCrossingTest,
                         testing::Combine(testing::ValuesIn(kSetters), testing::ValuesIn(kCrossings)), NameOfCrossing);

class UnsetCrossingTest : public testing::TestWithParam<Setter> {
 protected:
  std::unique_ptr<Target> Over(const Target::Options& options) const { return GetParam().Make(options); }
  template <class Check>
  void ForEachDataType(Check check) const {
    for (std::int32_t code = -1; code <= 12; ++code) {
      SCOPED_TRACE(code);
      check(zDataTypes{code});
    }
  }
};

TEST_P(UnsetCrossingTest, EmptyAndNullAreKeptUnderEveryType) {
  ForEachDataType([&](zDataTypes dataType) {
    ExpectKept(*Over({.DataType = dataType}), Variant());
    ExpectKept(*Over({.DataType = dataType}), Variant::Null());
  });
}

TEST_P(UnsetCrossingTest, NullReadsAsNull) {
  ForEachDataType([&](zDataTypes dataType) {
    const auto target = Over({.DataType = dataType});
    target->Set(Variant::Null());
    EXPECT_TRUE(target->Read().IsNull());
  });
}

TEST_P(UnsetCrossingTest, OnlyARequiredPropertyRefusesNull) {
  ForEachDataType([&](zDataTypes dataType) {
    const auto target = Over({.DataType = dataType, .Flags = pfRequired});
    if (!target->TestsLikeAProperty()) return ExpectKept(*target, Variant::Null());
    ExpectRefused(*target, Variant::Null(), errValue_Required, {.Text = "'  Flags: 'Required'", .Count = 1});
  });
}

TEST_P(UnsetCrossingTest, OnlyTheValueOfARequiredPropertyRefusesEmpty) {
  ForEachDataType([&](zDataTypes dataType) {
    const auto target = Over({.DataType = dataType, .Flags = pfRequired});
    if (!target->TestsLikeAProperty() || !target->RefusesEmptyWhenRequired()) return ExpectKept(*target, Variant());
    ExpectRefused(*target, Variant(), errValue_Required, {.Text = "'  Flags: 'Required'", .Count = 1});
  });
}

TEST_P(UnsetCrossingTest, OnlyAPropertyRefusesATextOfNoLength) {
  for (const std::int32_t size : {0, 1}) {
    const auto target = Over({.DataType = dtString, .Flags = pfRequired, .Size = size});
    if (!target->TestsLikeAProperty()) {
      ExpectKept(*target, "");
    } else {
      ExpectRefused(*target, "", errValue_ZeroLength, {.Text = "'  Flags: 'Required'", .Count = 1});
    }
  }
}

TEST_P(UnsetCrossingTest, SizeBelowZeroIsNoLimit) {
  for (const std::int32_t size : {-1, -2147483647 - 1}) ExpectKept(*Over({.DataType = dtString, .Size = size}), "abc");
}

TEST_P(UnsetCrossingTest, SizeCountsCharactersAndNotBytes) {
  ExpectKept(*Over({.DataType = dtString, .Size = 3}), "äö€");
  ExpectRefused(*Over({.DataType = dtString, .Size = 2}), "äö€", errValue_Size,
                {.Text = "Size Limit: 2  Value Length: 3", .Count = 1});
}

INSTANTIATE_TEST_SUITE_P(Table, UnsetCrossingTest, testing::ValuesIn(kSetters),
                         [](const auto& each) { return std::string(each.param.Name); });

class EmptyReadingTest : public testing::TestWithParam<StorageColumn> {};

TEST_P(EmptyReadingTest, EmptyReadsAsTheZeroOfItsType) {
  const auto zero = std::string(GetParam().Storage) + ":" + GetParam().Zero;
  for (const auto* setter : {&kSetters[0], &kSetters[1], &kSetters[4]}) {
    const auto target = setter->Make({.DataType = GetParam().DataType});
    target->Set(Variant());
    EXPECT_EQ(Shown(target->Read()), zero) << setter->Name;
    EXPECT_TRUE(target->Stored().IsEmpty());
  }
}

TEST_P(EmptyReadingTest, EmptyDefaultValueReadsAsEmpty) {
  const auto target = Made<DefaultOfProperty>({.DataType = GetParam().DataType});
  target->Set(Variant());
  EXPECT_TRUE(target->Read().IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Table, EmptyReadingTest, testing::ValuesIn(kStorageColumns),
                         [](const auto& each) { return std::string(each.param.Storage); });

}  // namespace
}  // namespace velmoria::test
