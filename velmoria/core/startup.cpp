#include <array>
#include <string>
#include <utility>

#include "velmoria/brokering/business_context.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/brokering/key_format_data.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/product.h"
#include "velmoria/core/profile.h"
#include "velmoria/core/reporting.h"
#include "velmoria/data/connection_context.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/databases.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/servers.h"
#include "velmoria/properties/parents_data.h"

namespace velmoria {

namespace {

struct StartupStep {
  void (*Run)(ApartmentState& apartment);
  std::int32_t Line = __builtin_LINE();
};

void MakeMessages(ApartmentState& apartment) { apartment.Messages = Make<Messages>(apartment); }

// What is damaged in the store has been passed over when the log settings were read, and is kept by the store.
void ReportDamagedSettings(ApartmentState& apartment) {
  auto damage = apartment.Platform.Settings->TakeDamage(ProductVersionLabel);
  if (!damage.empty()) Fail(RuntimeFailure::PathFileAccess, std::move(damage));
}

// A Profile that could not be read is left out: at its end it would overwrite what it does not know.
void MakeProfile(ApartmentState& apartment) {
  auto profile = Make<Profile>(apartment.Platform.Settings);
  profile->Load();
  apartment.Profile = profile;
}

void MakeDefaultKeyFormat(ApartmentState& apartment) {
  auto data = Make<KeyFormatData>();
  data->Setup({});
  auto keyFormat = Make<KeyFormat>();
  keyFormat->Bind(data, {});
  apartment.DefaultKeyFormat = keyFormat;
}

void MakeServersData(ApartmentState& apartment) { apartment.ServersData = Make<ServersData>(); }

void MakeDatabasesData(ApartmentState& apartment) { apartment.DatabasesData = Make<DatabasesData>(); }

template <class Collection, class Data>
Ref<Collection> MakeBound(const Ref<Data>& data) {
  auto collection = Make<Collection>();
  collection->Bind(data);
  return collection;
}

void MakeDatabases(ApartmentState& apartment) { apartment.Databases = MakeBound<Databases>(apartment.DatabasesData); }

void MakeServers(ApartmentState& apartment) { apartment.Servers = MakeBound<Servers>(apartment.ServersData); }

void MakeConnectionContext(ApartmentState& apartment) { apartment.ConnectionContext = Make<ConnectionContext>(); }

void MakeBusinessContext(ApartmentState& apartment) {
  auto context = Make<BusinessContext>();
  context->Setup({});
  apartment.BusinessContext = context;
}

constexpr std::array kSteps{
    StartupStep{MakeMessages},         StartupStep{ReportDamagedSettings}, StartupStep{MakeProfile},
    StartupStep{MakeDefaultKeyFormat}, StartupStep{MakeServersData},       StartupStep{MakeDatabasesData},
    StartupStep{MakeDatabases},        StartupStep{MakeServers},           StartupStep{MakeConnectionContext},
    StartupStep{MakeBusinessContext},
};

// Inside a catch block: what is in flight becomes a Warning under its own number.
void RecordStartupFailure(ApartmentState& apartment, std::int32_t line) {
  const auto failure = CurrentError();
  if (!apartment.Messages) return;
  const auto catalogueNumber = failure.CatalogueNumber();
  apartment.Messages->SetupItem({.Number = zErrors{catalogueNumber != 0 ? catalogueNumber : failure.Number()},
                                 .Description = failure.Description(),
                                 .TypeName = "FrameworkGlobals",
                                 .RoutineName = "Main",
                                 .ErrLine = line,
                                 .SeverityFlags = svfWarning});
}

}  // namespace

void Main(ApartmentState& apartment) {
  if (apartment.StartedFlag) return;
  apartment.StartedFlag = true;
  for (const auto& step : kSteps) {
    apartment.Starting = true;
    try {
      step.Run(apartment);
      apartment.Starting = false;
    } catch (...) {
      apartment.Starting = false;
      RecordStartupFailure(apartment, step.Line);
    }
  }
}

}  // namespace velmoria
