#pragma once

// The chapters of the demonstration, in the order in which main.cpp shows them.

// reading.cpp
void ShowOneOrder();
void FollowRelationships();
void WalkAllOrders();

// writing.cpp
void ChangeAndUpdate();
void TakeAnOrder();
void DropTheOrder();
void CloseAnAccount();

// failing.cpp
void ShowFailures();
