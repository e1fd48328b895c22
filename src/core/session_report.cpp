#include "core/session_report.h"

#include "core/company_access.h"
#include "core/data_access.h"
#include "core/session.h"

namespace kaunter {

ReportJob SessionReport(const Session& session, const std::string& file) {
  ReportJob job;
  job.ReportFileName = session.AppPath + "/" + file;
  job.Connect = session.MainConn.get();
  job.PrintedBy = session.CurrentUserID;
  job.Chinese = session.ChineseFlag;
  job.Company = ScalarQuery(session.Main(), "SELECT CompanyName FROM CompanyProfile");
  job.Companies = CompanyLiterals(session);
  return job;
}

}  // namespace kaunter
