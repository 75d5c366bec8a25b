#pragma once

#include <string>

#include "velmoria/fwd.h"

/// A heading between two steps.
void Title(const std::string& text);
/// A label and what stands behind it, aligned.
void Row(const std::string& label, const std::string& value);
/// The value of a Property as its user sees it.
std::string Shown(const velmoria::PropertyPtr& property);
/// A fact that must hold: prints it, or throws std::runtime_error when it is not so.
void Prove(bool holds, const std::string& fact);
