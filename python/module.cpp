#include "Analysis.h"
#include "BatchResult.h"
#include "Datum.h"
#include "RadioFileError.h"

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <mutex>
#include <optional>
#include <string>
#include <utility>

// What qor_power, written in Python, needs of the analysis: a question put, its reply handed back.
// Texts go in and out, so that no object of Python is touched while its interpreter's lock is
// released.

namespace {

namespace py = pybind11;

/// Of a process only one question may be asked at a time.
std::mutex oneQuestion;

Reply ask(const Question& question, const std::string& radioFile) {
    const py::gil_scoped_release released;
    const std::lock_guard lock(oneQuestion);
    return answerTo(question, radioFile);
}

/// What is wrong with a radio file as changed by inputs.
struct Trouble {
    Outcome outcome;
    std::string line;
    std::string place;
    std::string problem;
    std::string remedy;
};

std::optional<Trouble> troubleOf(const std::string& radioFile, const AskedInputs& inputs) {
    const py::gil_scoped_release released;
    const std::lock_guard lock(oneQuestion);
    try {
        static_cast<void>(inputs.radio(radioFile, ""));
    } catch (const RadioFileError& error) {
        return Trouble{Outcome::BadRadioFile, error.what(), error.place(), error.problem(),
                       error.remedy()};
    } catch (const AnalysisError& error) {
        return Trouble{error.outcome(), error.what(), "", error.what(), ""};
    }
    return std::nullopt;
}

/// The line that a batch prints of a radio.
/// @param unreadable why there is no text; empty: there is.
std::string batchLine(const std::string& id, const std::string& path, const std::string& radioFile,
                      const std::string& unreadable, const AskedInputs& inputs) {
    const py::gil_scoped_release released;
    const std::lock_guard lock(oneQuestion);
    static const BatchForm form({});
    const auto text = [&] {
        if (!unreadable.empty()) {
            throw AnalysisError(Outcome::OtherTrouble, unreadable);
        }
        return radioFile;
    };
    return form.linesOf(BatchResult::of(id, path, text, inputs));
}

} // namespace

PYBIND11_MODULE(_qor_power, module) {
    module.attr("version") = QOR_POWER_VERSION;

    py::enum_<Question::Topic>(module, "Topic")
        .value("TABLE", Question::Topic::Table)
        .value("EXPLANATION", Question::Topic::Explanation)
        .value("WHY_NOT", Question::Topic::WhyNot)
        .value("SWEEP", Question::Topic::Sweep)
        .value("DIFF", Question::Topic::Diff)
        .value("CHECK", Question::Topic::Check)
        .value("PICTURE", Question::Topic::Picture);
    py::enum_<Question::Form>(module, "Form")
        .value("JSON", Question::Form::Json)
        .value("SVG", Question::Form::Svg);
    py::enum_<Outcome>(module, "Outcome")
        .value("DONE", Outcome::Done)
        .value("ANSWER_IS_NO", Outcome::AnswerIsNo)
        .value("BAD_RADIO_FILE", Outcome::BadRadioFile)
        .value("SERVICE_DID_NOT_START", Outcome::ServiceDidNotStart)
        .value("OTHER_TROUBLE", Outcome::OtherTrouble);

    py::class_<AskedInputs>(module, "Inputs")
        .def(py::init<>())
        .def(py::init<const AskedInputs&>())
        .def_readwrite("frame_format", &AskedInputs::frameFormat)
        .def_readwrite("cutback_db", &AskedInputs::cutback)
        .def_readwrite("temporary_cutback_db", &AskedInputs::temporaryCutback)
        .def_readwrite("booster", &AskedInputs::booster)
        .def_readwrite("rsec", &AskedInputs::rsec)
        .def_readwrite("min", &AskedInputs::min)
        .def_readwrite("max", &AskedInputs::max)
        .def_readwrite("request", &AskedInputs::request)
        .def_readwrite("set", &AskedInputs::set);
    py::class_<Question>(module, "Question")
        .def(py::init<>())
        .def_readwrite("topic", &Question::topic)
        .def_readwrite("form", &Question::form)
        .def_readwrite("radio_name", &Question::radioName)
        .def_readwrite("inputs", &Question::inputs)
        .def_readwrite("modulations", &Question::modulations)
        .def_readwrite("power", &Question::power)
        .def_readwrite("changes", &Question::changes)
        .def_readwrite("over", &Question::over)
        .def_readwrite("other_radio", &Question::otherRadio)
        .def_readwrite("other_name", &Question::otherName)
        .def_readwrite("title", &Question::title);
    py::class_<Reply>(module, "Reply")
        .def_readonly("outcome", &Reply::outcome)
        .def_readonly("text", &Reply::text)
        .def_readonly("messages", &Reply::messages);
    py::class_<Trouble>(module, "Trouble")
        .def_readonly("outcome", &Trouble::outcome)
        .def_readonly("line", &Trouble::line)
        .def_readonly("place", &Trouble::place)
        .def_readonly("problem", &Trouble::problem)
        .def_readonly("remedy", &Trouble::remedy);

    module.def("ask", &ask, py::arg("question"), py::arg("radio_file"));
    module.def("trouble_of", &troubleOf, py::arg("radio_file"), py::arg("inputs"));
    module.def("batch_line", &batchLine, py::arg("id"), py::arg("path"), py::arg("radio_file"),
               py::arg("unreadable"), py::arg("inputs"));
}
