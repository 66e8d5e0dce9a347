#pragma once
// The entry class: the four operations a host calls. Each records the host, passes its guards and
// hands over to the run controller or the chart modules; no error ever reaches the host.
#include <memory>
#include <string>
#include <vector>

#include "common/component.h"
#include "host/fwd.h"

namespace forms {
class Dialogs;
class FrontEnd;
}  // namespace forms

namespace ps {

class Clock;

class IPlotsmithController {
public:
    virtual ~IPlotsmithController() = default;
    virtual void RunPlotsmith(host::Ref<host::Application> oApplication, std::string sCustomAppName,
                              std::string sHelpFile) = 0;
    virtual void RefreshPlotsmithData(host::Ref<host::Application> oApplication, std::string sCustomAppName,
                                      std::string sHelpFile) = 0;
    virtual void RefreshChartsForTable(host::Ref<host::Application> oApplication, std::string& sTableRangeName) = 0;
    virtual void UpdateChartColumnNamesForTable(host::Ref<host::Application> oApplication, std::string sTableRangeName,
                                                std::vector<std::string>& aOldColumnNames,
                                                std::vector<std::string>& aNewColumnNames) = 0;
};

class CPlotsmithController : public IPlotsmithController {
public:
    CPlotsmithController(forms::FrontEnd& frontEnd, forms::Dialogs& dialogs, Clock& clock);
    ~CPlotsmithController() override;

    void RunPlotsmith(host::Ref<host::Application> oApplication, std::string sCustomAppName,
                      std::string sHelpFile) override;
    void RefreshPlotsmithData(host::Ref<host::Application> oApplication, std::string sCustomAppName,
                              std::string sHelpFile) override;
    void RefreshChartsForTable(host::Ref<host::Application> oApplication, std::string& sTableRangeName) override;
    void UpdateChartColumnNamesForTable(host::Ref<host::Application> oApplication, std::string sTableRangeName,
                                        std::vector<std::string>& aOldColumnNames,
                                        std::vector<std::string>& aNewColumnNames) override;

    Component& component() { return *c_; }
    // Why the workbook can't take a chart operation now (none open, its structure protected,
    // shared, a cell being edited), as the operations tell the user; "" when it can.
    std::string WorkbookRefusal(const host::Ref<host::Application>& oApplication);

private:
    void RunGuarded(const host::Ref<host::Application>& oApplication, const std::string& sCustomAppName,
                    const std::string& sHelpFile, long lMode, const char* sWhere);
    // The first host and name stay for the life of the component.
    void SetHostContext(const host::Ref<host::Application>& oApplication, const std::string& sCustomAppName);
    // Whether a cell or object is being edited, found by provoking the host's refusal.
    bool HostIsEditing(const host::Ref<host::Application>& oApplication);
    std::unique_ptr<Component> c_;
};

}  // namespace ps
