#pragma once

// Sums of rows with weights, the work of spreading influence: every receiver row is a weighted sum
// of the source rows that reach it. Vectors run along the rows, so each element of a sum adds its
// terms one after the other in the order of the sources, whatever the width of the vectors.

#include <cstddef>
#include <vector>

namespace tessaran::stress {

// Weights of the sources of a few receiver rows that are summed together.
struct WeightBlock {
    static constexpr int kRows = 4;

    int firstReceiver = 0;
    int receivers = 0; // kRows but in the last block
    int firstSource = 0;
    int sources = 0;
    // [table][source][receiver]: one table for each field that is summed. A source that does not
    // reach a receiver has the weight 0.
    std::vector<double> weights[2];
};

// Rows of equal length, one behind the other.
struct Rows {
    const double* values = nullptr;
    std::size_t length = 0;
    const double* row(int k) const { return values + static_cast<std::size_t>(k) * length; }
};

struct ColumnRange {
    std::size_t begin = 0;
    std::size_t end = 0;
};

// out[receiver][c] += factor * sum over sources of (weights[0] fields[0][source][c] + ...), one or
// two fields, for the receivers of the block and the columns of the range.
void addWeightedSums(const WeightBlock& block, const Rows* fields, int fieldCount,
                     ColumnRange columns, double factor, double* out);

} // namespace tessaran::stress
