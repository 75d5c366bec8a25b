#pragma once

#include <string>

/// Describes the business classes "Customer", "Order" and "OrderLine", how they hang together, the operations behind
/// them and the database that holds them, in the collections of this thread's Framework; registers the classes of
/// order.h.
void DescribeBusiness(const std::string& databaseFile);
