#pragma once

namespace sandbox {

class Host;

/// Each adds the rows of one group of services to the host's table.
void addWidgetServices(Host& host);
void addValueServices(Host& host);
void addListServices(Host& host);
void addDialogServices(Host& host);
void addSettingsServices(Host& host);
void addScenarioServices(Host& host);
void addApplicationServices(Host& host);
void addViewServices(Host& host);
void addOverlayServices(Host& host);
void addScreenServices(Host& host);
void addContextMenuServices(Host& host);

}  // namespace sandbox
