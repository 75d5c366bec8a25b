#pragma once

/// Changed objects saved by one Update of their collection, beside the same UPDATE texts sent one by one.
void BenchUpdates();
