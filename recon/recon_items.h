// The lists behind the figures of a reconciliation: the items that a figure is the sum of, and the escrow
// files that hold money.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "recon/recon_pass.h"
#include "shell/screen_routes.h"

namespace tallwick {

// Which items: those of the kinds that are part of the figure.
struct ReconList {
  std::string_view control;  // the button that shows it
  std::string_view caption;  // the figure's name
  bool checks = false;
  bool wires = false;
  bool deposits = false;
  ReconFigure figure = kFigureOutstanding;

  bool Takes(const ReconEntry& entry) const;
};

struct ReconListSum {
  Currency sum;
  std::int64_t count = 0;
};
ReconListSum SumOf(const std::vector<ReconEntry>& entries, const ReconList& list);

// Rows of the items, read from the bank's tables (opened here, with a position of their own) as they are
// shown; the amount is the one that was counted. Null when a table cannot be opened, after a message.
std::shared_ptr<RowSource> MakeItemRows(const TableHome& home, const std::string& bank_code,
                                        const std::vector<ReconEntry>& entries, const ReconList& list);

// The way to the item of a row; nullopt for a row of the list of files.
std::optional<ItemRoute> RouteOfRow(const std::vector<std::string>& cells);

std::shared_ptr<RowSource> MakeFileRows(std::vector<FileBalance> files);

}  // namespace tallwick
