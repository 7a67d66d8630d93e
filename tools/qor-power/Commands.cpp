#include "Commands.h"

#include "BatchCommand.h"
#include "CheckCommand.h"
#include "DiffCommand.h"
#include "DocumentCommands.h"
#include "ExamplesCommand.h"
#include "ExplainCommand.h"
#include "PlotCommand.h"
#include "ReplayCommand.h"
#include "SweepCommand.h"
#include "TableCommand.h"
#include "WhyNotCommand.h"

std::vector<Command> allCommands() {
    return {
        TableCommand::describe(),    ExplainCommand::describe(), WhyNotCommand::describe(),
        SweepCommand::describe(),    DiffCommand::describe(),    PlotCommand::describe(),
        CheckCommand::describe(),    ReplayCommand::describe(),  BatchCommand::describe(),
        ExamplesCommand::describe(), ManualCommand::describe(),  CompletionCommand::describe(),
    };
}
