#pragma once

#include <string>

/// Describes the business classes "Customer", "Order" and "OrderLine", the operations behind them and the database that
/// holds them, in the collections of this thread's Framework.
void DescribeBusiness(const std::string& databaseFile);
