<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es">
<context>
    <name></name>
    <message id="WelcomeWhat">
        <source></source>
        <translation>Muestra lo que un programa de finanzas tiene previsto: pagos e ingresos vencidos, de hoy y de los próximos días.</translation>
    </message>
    <message id="WelcomeFolder">
        <source></source>
        <translation>La lista aparece en cuanto el programa la guarda en esta carpeta:</translation>
    </message>
    <message id="WelcomeDocumentation">
        <source></source>
        <translation>La documentación de Korvel Today explica cómo se conecta un programa.</translation>
    </message>
    <message id="WelcomeFound">
        <source></source>
        <translation>Elige un archivo para ver lo que tiene previsto:</translation>
    </message>
    <message id="WelcomeOnlyRead">
        <source></source>
        <translation>El archivo solo se lee; nunca se modifica.</translation>
    </message>
    <message id="WelcomeReading">
        <source></source>
        <translation>Leyendo el archivo…</translation>
    </message>
    <message id="WelcomeShowFile">
        <source></source>
        <translation>Mostrar %1, %2</translation>
    </message>
    <message id="TodayViewEmtyText">
        <source></source>
        <translation>Nada pendiente</translation>
    </message>
    <message id="ShowAllTitle">
        <source></source>
        <translation>Mostrar todo…</translation>
    </message>
    <message id="ResheduleTomorrow">
        <source></source>
        <translation>Mañana</translation>
    </message>
    <message id="Reshedule3Days">
        <source></source>
        <translation>En 3 días</translation>
    </message>
    <message id="ResheduleNextWeek">
        <source></source>
        <translation>La próxima semana</translation>
    </message>
    <message id="DeleteFutureEnteres">
        <source></source>
        <translation>Esta entrada y las siguientes</translation>
    </message>
    <message id="DeleteCurrentPlanButtonTitle">
        <source></source>
        <translation>Solo esta entrada</translation>
    </message>
    <message id="CancelButtonTitle">
        <source></source>
        <translation>Cancelar</translation>
    </message>
    <message id="FailureTitle">
        <source></source>
        <translation>No se pudo cargar la lista</translation>
    </message>
    <message id="FailureText">
        <source></source>
        <translation>Tus datos están intactos. Korvel Today lo intenta de nuevo por sí solo, y en cuanto algo cambia en la carpeta compartida.</translation>
    </message>
    <message id="FailureTryAgain">
        <source></source>
        <translation>Intentar de nuevo</translation>
    </message>
    <message id="FailureExplain">
        <source></source>
        <translation>¿Qué ocurre?</translation>
    </message>
    <message id="PaidButtonHelp">
        <source></source>
        <translation>Marcar como pagado</translation>
    </message>
    <message id="LaterButtonHelp">
        <source></source>
        <translation>Aplazar</translation>
    </message>
    <message id="InfoButtonHelp">
        <source></source>
        <translation>Abrir</translation>
    </message>
    <message id="DeleteButtonHelp">
        <source></source>
        <translation>Eliminar</translation>
    </message>
    <message id="AddButtonHelp">
        <source></source>
        <translation>Añadir una transacción</translation>
    </message>
    <message id="OverdueDescription">
        <source></source>
        <translation>vencido</translation>
    </message>
    <message id="OpenRowDescription">
        <source></source>
        <translation>acciones visibles</translation>
    </message>
    <message id="OverdueCountText">
        <source></source>
        <translation>%L1 con retraso</translation>
    </message>
    <message id="DueTodayCountText">
        <source></source>
        <translation>%L1 para hoy</translation>
    </message>
    <message id="BothCountsText">
        <source></source>
        <translation>%1, %2</translation>
    </message>
    <message id="NothingIsDueText">
        <source></source>
        <translation>No hay nada pendiente</translation>
    </message>
    <message id="TrayShowTitle">
        <source></source>
        <translation>Mostrar</translation>
    </message>
    <message id="TrayAddTitle">
        <source></source>
        <translation>Añadir una transacción</translation>
    </message>
    <message id="TrayOpenApplicationTitle">
        <source></source>
        <translation>Abrir la aplicación de finanzas</translation>
    </message>
    <message id="TrayShowFolderTitle">
        <source></source>
        <translation>Mostrar la carpeta compartida</translation>
    </message>
    <message id="TrayQuitTitle">
        <source></source>
        <translation>Salir</translation>
    </message>
    <message id="NotificationOpenTitle">
        <source></source>
        <translation>Abrir</translation>
    </message>
    <message id="NotificationNotTodayTitle">
        <source></source>
        <translation>Hoy no</translation>
    </message>
</context>
</TS>
