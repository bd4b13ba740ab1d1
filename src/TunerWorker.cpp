#include "TunerWorker.h"

#include <array>
#include <memory>

#include "support/HardEnd.h"

quiravent::WorkerSlot<TunerWorker> g_tuner_worker;

namespace {

void onDtvAction(e_pl_dtv_error error) {
    const std::shared_ptr<TunerWorker> worker = g_tuner_worker.Get();
    if (!worker) quiravent::EndByNullRead();
    worker->onDtvActionCallback(error == e_pl_dtv_error_none, error);
}

}  // namespace

void TunerWorker::close() {
    SetClosed();
    Wake();
}

std::string TunerWorker::err_to_str(e_pl_dtv_error error) {
    static constexpr std::array<const char*, 10> kTexts = {"",
                                                           "Recurso indisponível",
                                                           "Operação indisponível",
                                                           "Operação não permitida",
                                                           "Operação não suportada",
                                                           "Parâmetro inválido",
                                                           "Dados indisponíveis",
                                                           "Sem Sinal",
                                                           "Serviço não encontrado",
                                                           "Mídia não encontrada"};
    if (error < kTexts.size()) return kTexts[error];
    return error == e_pl_dtv_error_unavailable ? "Funcionalidade não disponível"
                                               : "Erro desconhecido";
}

void TunerWorker::Attach() {
    const char* option = m_streamOption.empty() ? nullptr : m_streamOption.c_str();
    (void)pl_dtv_Action_selectTransportStream(m_streamSelector.c_str(), option, onDtvAction);
}

void TunerWorker::Detach() { (void)pl_dtv_Action_unselectTransportStream(); }

quiravent::Message TunerWorker::MessageOf(std::pair<bool, e_pl_dtv_error> report) {
    const std::string locked = report.first ? "1" : "0";
    return {"tunerlock", locked + "," + err_to_str(report.second)};
}
