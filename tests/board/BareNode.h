#pragma once

/// The five neighbours of channel 1 with fixed answers; they take nothing from the heap.
///
/// An ETSI radio with a Pmax for every modulation, the range 4QAM to 16384QAM selected, and the
/// same frame format configured and under the id 1.
namespace BareNode {

/// Publishes the neighbours in the broker, for as long as the program runs.
void publish();

/// Changes the product number, and with it the hardware family. At most 15 characters: a longer
/// string would lie on the heap.
void setProductNumber(const char* productNumber);

} // namespace BareNode
